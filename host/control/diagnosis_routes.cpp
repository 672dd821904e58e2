// SPDX-License-Identifier: MIT
// What the program does, by HTTP.
#include <errno.h>
#include <unistd.h>

#include <chrono>
#include <nlohmann/json.hpp>

#include "host/clock/clock.h"
#include "host/control/control.h"
#include "host/control/wall_time.h"
#include "host/registration/call_history.h"
#include "host/registration/registry.h"
#include "host/symbol/symbol.h"

using nlohmann::json;

namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;
using Microseconds = std::chrono::duration<double, std::micro>;

json orNull(std::optional<int> result) {
  return result ? json(*result) : json();
}

double msOf(CallStatistics::Duration duration) {
  return Milliseconds(duration).count();
}

json describe(const Callback& callback) {
  const Symbol symbol = symbolOf(callback.callee);
  const CallStatistics& statistics = callback.statistics;
  return {{"kind", nameOf(callback.kind)},     {"key", callback.key},
          {"function", symbol.name},           {"location", symbol.location},
          {"since", isoTime(callback.since)},  {"count", statistics.count},
          {"totalMs", msOf(statistics.total)}, {"longestMs", msOf(statistics.longest)},
          {"lastMs", msOf(statistics.last)},   {"lastResult", orNull(statistics.last_result)}};
}

json listRegistrations(const Registry& registry) {
  json registrations = json::array();
  for (const auto& callback : registry.callbacks()) registrations.push_back(describe(*callback));
  return {{"registrations", std::move(registrations)}};
}

// A complete event of the trace-event format.
json traceEvent(const Call& call) {
  const Callback& callback = *call.callback;
  return {{"name", symbolOf(callback.callee).name},
          {"cat", nameOf(callback.kind)},
          {"ph", "X"},
          {"ts", Microseconds(call.before.time.time_since_epoch()).count()},
          {"dur", Microseconds(call.after.time - call.before.time).count()},
          {"pid", getpid()},
          {"tid", 1},
          {"args", {{"key", callback.key}, {"result", orNull(call.result)}}}};
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

}  // namespace

json Control::statistics() const {
  const CallStatistics& calls = controlled_.registry.statistics();
  const auto uptime = controlled_.clock.wallTime() - started_;
  return {{"pid", getpid()},
          {"program", program_invocation_short_name},
          {"uptimeMs", std::chrono::duration_cast<std::chrono::milliseconds>(uptime).count()},
          {"clock", controlled_.clock.isVirtual() ? "virtual" : "real"},
          {"callbacks", calls.count},
          {"busyMs", msOf(calls.total)},
          {"longestMs", msOf(calls.longest)},
          {"events", event_count_},
          {"changes", change_count_},
          {"clients", server_.clients()}};
}

void Control::addDiagnosisRoutes() {
  api_.answer("GET", "/registrations",
              [this](const ApiRequest&) { return listRegistrations(controlled_.registry); });
  api_.answer("GET", "/statistics", [this](const ApiRequest&) { return statistics(); });
  api_.answer("GET", "/trace", [this](const ApiRequest&) { return traceOf(controlled_.history); });
}
