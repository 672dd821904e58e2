// SPDX-License-Identifier: MIT
// Events, the log and the lifecycle by HTTP.
#include <nlohmann/json.hpp>

#include "host/control/control.h"
#include "host/lifecycle/lifecycle.h"

using nlohmann::json;

namespace {

json listModules(const Lifecycle& lifecycle) {
  json modules = json::array();
  for (const Participant& module : lifecycle.modules()) {
    modules.push_back({{"library", module.name()}, {"state", nameOf(module.state())}});
  }
  return {{"modules", std::move(modules)}, {"state", nameOf(lifecycle.state())}};
}

json sendEvent(EventService& events, const ApiRequest& request) {
  request.expectOnly({"event", "data"});
  events.notify(request.text("event"), request.text("data"), 0);
  return {{"result", 0}};
}

}  // namespace

void Control::addServiceRoutes() {
  api_.answer("POST", "/events",
              [this](const ApiRequest& request) { return sendEvent(controlled_.events, request); });
  api_.follow("/events", [this](const ApiRequest& request, const auto& open) {
    const std::string wanted = request.parameterOr("event", "");
    events_.add(open(), [this, wanted](const EventService::Event& event) {
      if (!wanted.empty() && event.name != wanted) return std::string();
      return lineOf({{"time", now()}, {"event", event.name}, {"data", event.data}, {"source", event.source}});
    });
  });
  api_.follow("/log", [this](const ApiRequest&, const auto& open) {
    lines_.add(open(), [this](const LogService::Line& line) {
      return lineOf({{"time", now()}, {"level", line.level}, {"module", line.module}, {"text", line.text}});
    });
  });
  api_.answer("GET", "/modules", [this](const ApiRequest&) { return listModules(controlled_.lifecycle); });
  api_.answer("POST", "/stop", [this](const ApiRequest&) -> json {
    stopSoon();
    return {{"result", 0}};
  });
}
