// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_HEARTBEAT_HEARTBEAT_H
#define CPP2C_HOST_HEARTBEAT_HEARTBEAT_H

#include <chrono>
#include <functional>
#include <string>

#include "binding/context.h"

namespace host {

// Reports each call that holds the loop longer than a limit. The time between lock() and unlock() does not
// count.
class Heartbeat final : public IHeartbeat {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;

  struct Reading {
    TimePoint time;
    TimePoint::duration locked;  // total time spent locked so far
    int locks;                   // currently held
  };

  Heartbeat(ILog& log, std::chrono::milliseconds limit, TimePoint (*now)() = std::chrono::steady_clock::now);

  int lock() override;
  int unlock() override;

  Reading read() const;

  // Reports the call that was made between the readings if it took too long. `describe` returns the
  // callback's description for the message.
  void check(const Reading& before, const Reading& after, const std::function<std::string()>& describe);

  int reserved3() override { return 0; }
  int reserved4() override { return 0; }
  int reserved5() override { return 0; }
  int reserved6() override { return 0; }
  int reserved7() override { return 0; }
  int reserved8() override { return 0; }

 private:
  ILog& log_;
  const std::chrono::milliseconds limit_;
  TimePoint (*const now_)();
  int locks_ = 0;
  TimePoint locked_at_;
  TimePoint::duration locked_time_{0};
};

}  // namespace host

#endif
