// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXT_HEARTBEAT_HEARTBEAT_H
#define CPP2C_CONTEXT_HEARTBEAT_HEARTBEAT_H

#include <chrono>
#include <string>

#include "binding/context.h"

// Reports each callback that holds the loop longer than a limit. While it is locked, time stands still.
class Heartbeat final : public IHeartbeat {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;

  Heartbeat(ILog& log, std::chrono::milliseconds limit, TimePoint (*now)() = std::chrono::steady_clock::now);

  int lock() override;
  int unlock() override;

  // Makes one call and measures it. `what` says for the report whose callback it is.
  template <typename Call>
  void measure(const std::string& what, Call call) {
    const TimePoint start = unlockedTime();
    call();
    check(what, unlockedTime() - start);
  }

  int reserved3() override { return 0; }
  int reserved4() override { return 0; }
  int reserved5() override { return 0; }
  int reserved6() override { return 0; }
  int reserved7() override { return 0; }
  int reserved8() override { return 0; }

 private:
  TimePoint unlockedTime() const;  // now, but for all the time spent locked
  void check(const std::string& what, TimePoint::duration held);

  ILog& log_;
  const std::chrono::milliseconds limit_;
  TimePoint (*const now_)();
  int depth_ = 0;
  TimePoint locked_at_;
  TimePoint::duration locked_time_{0};
};

#endif
