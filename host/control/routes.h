// SPDX-License-Identifier: MIT
// The requests that the control socket answers, grouped by service. The arguments must outlive the router.
#ifndef CPP2C_HOST_CONTROL_ROUTES_H
#define CPP2C_HOST_CONTROL_ROUTES_H

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>

#include "host/config/config_service.h"
#include "host/control/followers.h"
#include "host/control/router.h"
#include "host/event/event_service.h"
#include "host/log/log_service.h"

namespace host {

class CallHistory;
class Clock;
class Lifecycle;
class Registry;

// /leaf, /tree, /objects, /instances, /attribute, /save
void addConfigRoutes(Router& router, ConfigService& config);

// /changes
void addChangeRoutes(Router& router, ConfigService& config, Followers<ConfigService::Change>& followers,
                     const Clock& clock);

// /events
void addEventRoutes(Router& router, EventService& events, Followers<EventService::Event>& followers,
                    const Clock& clock);

// /log
void addLogRoutes(Router& router, Followers<LogService::Line>& followers, const Clock& clock);

// /modules, /stop
void addLifecycleRoutes(Router& router, const Lifecycle& lifecycle, std::function<void()> stop);

// /registrations, /trace
void addRegistrationRoutes(Router& router, const Registry& registry, const CallHistory& history);

// What has happened since the control socket was opened.
struct Activity {
  std::chrono::system_clock::time_point start;
  std::uint64_t events = 0;
  std::uint64_t changes = 0;
};

// /statistics
void addStatisticsRoutes(Router& router, const Registry& registry, const Clock& clock,
                         const Activity& activity, std::function<std::size_t()> clients);

}  // namespace host

#endif
