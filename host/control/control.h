// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONTROL_CONTROL_H
#define CPP2C_HOST_CONTROL_CONTROL_H

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

#include "host/config/config_service.h"
#include "host/control/api.h"
#include "host/control/http_server.h"
#include "host/control/topic.h"
#include "host/event/event_service.h"
#include "host/log/log_service.h"

class CallHistory;
class Clock;
class EventBase;
class EventLoop;
class Lifecycle;
class Registry;

// What is looked into and changed from outside, and outlives the control socket.
struct Controlled {
  const Clock& clock;
  ConfigService& config;
  EventService& events;
  LogService& log;
  Lifecycle& lifecycle;
  Registry& registry;
  CallHistory& history;
  EventLoop& loop;
};

// The control socket: shows the running program and changes it, by HTTP and JSON.
class Control {
 public:
  // Throws StartError if there can be no socket at `path`.
  Control(const Controlled& controlled, EventBase& base, const std::string& path,
          const Connections::Limits& limits = Connections::Limits());
  ~Control();
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

 private:
  using WallTime = std::chrono::system_clock::time_point;

  void addConfigRoutes();
  void addServiceRoutes();
  void addDiagnosisRoutes();
  void followNews();
  std::string now() const;
  nlohmann::json statistics() const;
  void stopSoon();

  const Controlled controlled_;
  const WallTime started_;
  std::uint64_t event_count_ = 0;
  std::uint64_t change_count_ = 0;
  Topic<EventService::Event> events_;
  Topic<ConfigService::Change> changes_;
  Topic<LogService::Line> lines_;
  EventPtr stop_;
  Api api_;
  HttpServer server_;
};

#endif
