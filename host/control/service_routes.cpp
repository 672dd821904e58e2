// SPDX-License-Identifier: MIT
// Events, the log and the lifecycle.
#include <nlohmann/json.hpp>
#include <utility>

#include "host/clock/clock.h"
#include "host/control/routes.h"
#include "host/lifecycle/lifecycle.h"
#include "include_c"
#include "util/error.h"

namespace host {
namespace {

std::string listModules(const Lifecycle& lifecycle) {
  std::string modules;
  for (const Participant& module : lifecycle.modules()) {
    modules += (modules.empty() ? "" : ",") +
               objectText({{"library", lineOf(module.name())}, {"state", lineOf(nameOf(module.state()))}});
  }
  return objectText({{"modules", '[' + modules + ']'}, {"state", lineOf(nameOf(lifecycle.state()))}});
}

std::string sendEvent(EventService& events, const ControlRequest& request) {
  const JsonValue body = request.body();
  body.allowOnly({"event", "data"});
  const int result = events.notify(body.required("event").string(), body.required("data").string(), 0);
  if (result == C_RESULT_OK) return objectText({{"result", lineOf(0)}});
  throw util::Error(result, "the event was sent, but the callback of an observer failed; see the log");
}

std::string describeEvent(const EventService::Event& event, const Clock& clock) {
  return objectText({{"time", lineOf(isoTime(clock.wallTime()))},
                     {"event", lineOf(event.name)},
                     {"data", lineOf(event.data)},
                     {"source", lineOf(event.source)}});
}

std::string describeLine(const LogService::Line& line, const Clock& clock) {
  return objectText({{"time", lineOf(isoTime(clock.wallTime()))},
                     {"level", lineOf(line.level)},
                     {"module", lineOf(line.module)},
                     {"text", lineOf(line.text)}});
}

}  // namespace

void addEventRoutes(Router& router, EventService& events, Followers<EventService::Event>& followers,
                    const Clock& clock) {
  router.answer("POST", "/events", [&](const ControlRequest& request) { return sendEvent(events, request); });
  router.follow("/events", [&](const ControlRequest& request, const Router::OpenStream& open) {
    const std::string name = request.parameterOr("event", "");
    followers.add(open(), [&clock, name](const EventService::Event& event) {
      const bool wanted = name.empty() || event.name == name;
      return wanted ? describeEvent(event, clock) : "";
    });
  });
}

void addLogRoutes(Router& router, Followers<LogService::Line>& followers, const Clock& clock) {
  router.follow("/log", [&](const ControlRequest&, const Router::OpenStream& open) {
    followers.add(open(), [&clock](const LogService::Line& line) { return describeLine(line, clock); });
  });
}

void addLifecycleRoutes(Router& router, const Lifecycle& lifecycle, std::function<void()> stop) {
  router.answer("GET", "/modules", [&](const ControlRequest&) { return listModules(lifecycle); });
  router.answer("POST", "/stop", [stop = std::move(stop)](const ControlRequest&) {
    stop();
    return objectText({{"result", lineOf(0)}});
  });
}

}  // namespace host
