// SPDX-License-Identifier: MIT
// Registrations, the trace of calls and statistics.
#include <errno.h>
#include <unistd.h>

#include <chrono>
#include <nlohmann/json.hpp>
#include <utility>

#include "host/clock/clock.h"
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

json listRegistrations(const Registry& registry) {
  json list = json::array();
  for (const auto& registration : registry.registrations()) {
    list.push_back(describeRegistration(*registration));
  }
  return {{"registrations", std::move(list)}};
}

// A complete event ("X") of the trace-event format.
json traceEvent(const Call& call) {
  const Registration& registration = *call.registration;
  return {{"name", symbolOf(registration.callee).name},
          {"cat", nameOf(registration.kind)},
          {"ph", "X"},
          {"ts", Microseconds(call.before.time.time_since_epoch()).count()},
          {"dur", Microseconds(call.after.time - call.before.time).count()},
          {"pid", getpid()},
          {"tid", 1},
          {"args", {{"key", registration.key}, {"result", orNull(call.result)}}}};
}

json traceOf(const CallHistory& history) {
  json events = json::array();
  events.push_back({{"name", "process_name"},
                    {"ph", "M"},
                    {"pid", getpid()},
                    {"tid", 1},
                    {"args", {{"name", program_invocation_short_name}}}});
  for (const Call& call : history.calls()) events.push_back(traceEvent(call));
  return {{"displayTimeUnit", "ms"}, {"traceEvents", std::move(events)}};
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
  router.answer("GET", "/registrations", [&](const ControlRequest&) { return listRegistrations(registry); });
  router.answer("GET", "/trace", [&](const ControlRequest&) { return traceOf(history); });
}

void addStatisticsRoutes(Router& router, const Registry& registry, const Clock& clock,
                         const Activity& activity, std::function<std::size_t()> clients) {
  router.answer("GET", "/statistics",
                [&registry, &clock, &activity, clients = std::move(clients)](const ControlRequest&) {
                  return describeStatistics(registry.statistics(), clock, activity, clients());
                });
}

}  // namespace host
