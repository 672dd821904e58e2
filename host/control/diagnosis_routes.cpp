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

using nlohmann::json;
using Milliseconds = std::chrono::duration<double, std::milli>;
using Microseconds = std::chrono::duration<double, std::micro>;

json orNull(std::optional<int> result) {
  return result ? json(*result) : json();
}

double msOf(CallStatistics::Duration duration) {
  return Milliseconds(duration).count();
}

json describeRegistration(const Registration& registration) {
  const Symbol symbol = symbolOf(registration.callee);
  const CallStatistics& statistics = registration.statistics;
  return {{"kind", nameOf(registration.kind)},
          {"key", registration.key},
          {"function", symbol.name},
          {"location", symbol.location},
          {"since", isoTime(registration.since)},
          {"count", statistics.count},
          {"totalMs", msOf(statistics.total)},
          {"longestMs", msOf(statistics.longest)},
          {"lastMs", msOf(statistics.last)},
          {"lastResult", orNull(statistics.last_result)}};
}

// Describes one item after the other.
template <typename Items, typename Describe>
NextElement inTurn(Items items, Describe describe) {
  return [items = std::move(items), describe, next = std::size_t{0}]() mutable -> std::optional<std::string> {
    if (next == items.size()) return std::nullopt;
    return lineOf(describe(items[next++]));
  };
}

ListText listRegistrations(const Registry& registry) {
  return ListText(R"({"registrations":[)", inTurn(registry.registrations(), [](const auto& registration) {
                    return describeRegistration(*registration);
                  }));
}

// A complete event ("X") of the trace-event format.
json traceEvent(const PastCall& call) {
  const Registration& registration = *call.registration;
  return {{"name", symbolOf(registration.callee).name},
          {"cat", nameOf(registration.kind)},
          {"ph", "X"},
          {"ts", Microseconds(call.begin.time_since_epoch()).count()},
          {"dur", Microseconds(call.duration).count()},
          {"pid", getpid()},
          {"tid", 1},
          {"args", {{"key", registration.key}, {"result", orNull(call.result)}}}};
}

json processName() {
  return {{"name", "process_name"},
          {"ph", "M"},
          {"pid", getpid()},
          {"tid", 1},
          {"args", {{"name", program_invocation_short_name}}}};
}

ListText traceOf(const CallHistory& history) {
  return ListText(
      R"({"displayTimeUnit":"ms","traceEvents":[)",
      [first = true, calls = inTurn(history.calls(), traceEvent)]() mutable -> std::optional<std::string> {
        return std::exchange(first, false) ? lineOf(processName()) : calls();
      });
}

json describeStatistics(const CallStatistics& calls, const Clock& clock, const Activity& activity,
                        std::size_t clients) {
  const auto uptime = clock.wallTime() - activity.start;
  return {{"pid", getpid()},
          {"program", program_invocation_short_name},
          {"uptimeMs", std::chrono::duration_cast<std::chrono::milliseconds>(uptime).count()},
          {"clock", clock.isVirtual() ? "virtual" : "real"},
          {"calls", calls.count},
          {"busyMs", msOf(calls.total)},
          {"longestMs", msOf(calls.longest)},
          {"events", activity.events},
          {"changes", activity.changes},
          {"clients", clients}};
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
