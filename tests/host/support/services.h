// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_HOST_SUPPORT_SERVICES_H
#define CPP2C_TESTS_HOST_SUPPORT_SERVICES_H

#include <chrono>
#include <utility>

#include "host/clock/clock.h"
#include "host/heartbeat/heartbeat.h"
#include "host/loop/event_base.h"
#include "host/loop/event_loop.h"
#include "host/registration/registry.h"
#include "host/timer/deadlines.h"
#include "tests/host/support/memory_log.h"

namespace host {

// The time by which calls are measured in tests. It moves only when a test calls pass().
class CallTime {
 public:
  static Heartbeat::TimePoint now() { return now_; }
  static void pass(Heartbeat::TimePoint::duration duration) { now_ += duration; }

 private:
  static inline Heartbeat::TimePoint now_;
};

// The services that most other services depend on.
struct Services {
  explicit Services(std::chrono::milliseconds heartbeat_limit = std::chrono::hours(1),
                    Registry::WallTime wall_time = std::chrono::system_clock::now)
      : heartbeat(log, heartbeat_limit, CallTime::now), registry(heartbeat, std::move(wall_time)) {}

  MemoryLog log;
  Heartbeat heartbeat;
  Registry registry;
};

// The services and a loop with deadlines.
struct LoopServices : Services {
  explicit LoopServices(Clock::Kind kind = Clock::Kind::kVirtual,
                        std::chrono::milliseconds heartbeat_limit = std::chrono::hours(1))
      : Services(heartbeat_limit, [this] { return clock.wallTime(); }), clock(kind) {}

  Clock clock;
  EventBase base{log};
  EventLoop loop{base, registry};
  Deadlines deadlines{base, clock};
};

}  // namespace host

#endif
