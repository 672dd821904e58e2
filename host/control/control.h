// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONTROL_CONTROL_H
#define CPP2C_HOST_CONTROL_CONTROL_H

#include <string>

#include "host/control/routes.h"
#include "host/http/server.h"

namespace host {

class EventLoop;
class LogService;

// The services that the control socket shows and changes. They must outlive it.
struct ControlledServices {
  const Clock& clock;
  ConfigService& config;
  EventService& events;
  LogService& log;
  Lifecycle& lifecycle;
  Registry& registry;
  CallHistory& history;
  EventLoop& loop;
};

// The control socket: HTTP and JSON through which the running program can be inspected and changed.
class Control {
 public:
  // Throws util::Error if the socket cannot be created at `path`.
  Control(const ControlledServices& services, EventBase& base, const std::string& path,
          const Connections::Limits& limits = Connections::Limits());
  ~Control();
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

 private:
  void addRoutes();
  void publishItems();
  void stopSoon();

  const ControlledServices services_;
  Activity activity_;
  Followers<EventService::Event> event_followers_;
  Followers<ConfigService::Change> change_followers_;
  Followers<LogService::Line> log_followers_;
  EventPtr stop_;
  Router router_;
  HttpServer server_;
};

}  // namespace host

#endif
