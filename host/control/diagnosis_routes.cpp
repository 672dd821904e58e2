// SPDX-License-Identifier: MIT
// Registrations, the trace of calls and statistics.
#include <errno.h>
#include <unistd.h>

#include <chrono>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>

#include "host/clock/clock.h"
#include "host/control/list_text.h"
#include "host/control/routes.h"
#include "host/registration/call_history.h"
#include "host/registration/registry.h"
#include "host/symbol/symbol.h"

namespace host {
namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;
using Microseconds = std::chrono::duration<double, std::micro>;

std::string orNull(std::optional<int> result) {
  return result ? lineOf(*result) : lineOf(nullptr);
}

double msOf(CallStatistics::Duration duration) {
  return Milliseconds(duration).count();
}

std::string describeRegistration(const Registration& registration) {
  const Symbol symbol = symbolOf(registration.callee);
  const CallStatistics& statistics = registration.statistics;
  return objectText({{"kind", lineOf(nameOf(registration.kind))},
                     {"key", lineOf(registration.key)},
                     {"function", lineOf(symbol.name)},
                     {"location", lineOf(symbol.location)},
                     {"since", lineOf(isoTime(registration.since))},
                     {"count", lineOf(statistics.count)},
                     {"totalMs", lineOf(msOf(statistics.total))},
                     {"longestMs", lineOf(msOf(statistics.longest))},
                     {"lastMs", lineOf(msOf(statistics.last))},
                     {"lastResult", orNull(statistics.last_result)}});
}

// Describes one item after the other.
template <typename Items, typename Describe>
NextElement inTurn(Items items, Describe describe) {
  return [items = std::move(items), describe, next = std::size_t{0}]() mutable -> std::optional<std::string> {
    if (next == items.size()) return std::nullopt;
    return describe(items[next++]);
  };
}

ListText listRegistrations(const Registry& registry) {
  return ListText(R"({"registrations":[)", inTurn(registry.registrations(), [](const auto& registration) {
                    return describeRegistration(*registration);
                  }));
}

// A complete event ("X") of the trace-event format.
std::string traceEvent(const PastCall& call) {
  const Registration& registration = *call.registration;
  return objectText(
      {{"name", lineOf(symbolOf(registration.callee).name)},
       {"cat", lineOf(nameOf(registration.kind))},
       {"ph", lineOf("X")},
       {"ts", lineOf(Microseconds(call.begin.time_since_epoch()).count())},
       {"dur", lineOf(Microseconds(call.duration).count())},
       {"pid", lineOf(getpid())},
       {"tid", lineOf(1)},
       {"args", objectText({{"key", lineOf(registration.key)}, {"result", orNull(call.result)}})}});
}

std::string processName() {
  return objectText({{"name", lineOf("process_name")},
                     {"ph", lineOf("M")},
                     {"pid", lineOf(getpid())},
                     {"tid", lineOf(1)},
                     {"args", objectText({{"name", lineOf(program_invocation_short_name)}})}});
}

ListText traceOf(const CallHistory& history) {
  return ListText(
      R"({"displayTimeUnit":"ms","traceEvents":[)",
      [first = true, calls = inTurn(history.calls(), traceEvent)]() mutable -> std::optional<std::string> {
        return std::exchange(first, false) ? processName() : calls();
      });
}

std::string describeStatistics(const CallStatistics& calls, const Clock& clock, const Activity& activity,
                               std::size_t clients) {
  const auto uptime = clock.wallTime() - activity.start;
  return objectText(
      {{"pid", lineOf(getpid())},
       {"program", lineOf(program_invocation_short_name)},
       {"uptimeMs", lineOf(std::chrono::duration_cast<std::chrono::milliseconds>(uptime).count())},
       {"clock", lineOf(clock.isVirtual() ? "virtual" : "real")},
       {"calls", lineOf(calls.count)},
       {"busyMs", lineOf(msOf(calls.total))},
       {"longestMs", lineOf(msOf(calls.longest))},
       {"events", lineOf(activity.events)},
       {"changes", lineOf(activity.changes)},
       {"clients", lineOf(clients)}});
}

}  // namespace

void addRegistrationRoutes(Router& router, const Registry& registry, const CallHistory& history) {
  router.list("/registrations", [&](const ControlRequest&) { return listRegistrations(registry); });
  router.list("/trace", [&](const ControlRequest&) { return traceOf(history); });
}

void addStatisticsRoutes(Router& router, const Registry& registry, const Clock& clock,
                         const Activity& activity, std::function<std::size_t()> clients) {
  router.answer("GET", "/statistics",
                [&registry, &clock, &activity, clients = std::move(clients)](const ControlRequest&) {
                  return describeStatistics(registry.statistics(), clock, activity, clients());
                });
}

}  // namespace host
