// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_TIMER_ALARM_H
#define CPP2C_HOST_TIMER_ALARM_H

#include <sys/types.h>

#include <chrono>
#include <optional>

#include "host/loop/event_base.h"

namespace host {

// Calls a function on the loop once a time has come, in each turn until another time is set. libevent's own
// precise timers would set the kernel's timer in each turn of the loop; this one sets it when the time
// changes.
class Alarm {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;

  // Throws util::Error.
  Alarm(EventBase& base, event_callback_fn callback, void* argument);
  ~Alarm();
  Alarm(const Alarm&) = delete;
  Alarm& operator=(const Alarm&) = delete;

  void set(std::optional<TimePoint> time);  // nothing: never

 private:
  void open();
  void close();

  EventBase& base_;
  const event_callback_fn callback_;
  void* const argument_;
  int fd_ = -1;
  EventPtr event_;
  std::optional<TimePoint> time_;
  pid_t process_ = -1;  // that opened the timer
};

}  // namespace host

#endif
