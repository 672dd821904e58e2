// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_TIMER_DEADLINES_H
#define CPP2C_HOST_TIMER_DEADLINES_H

#include <cstdint>
#include <functional>
#include <map>
#include <utility>

#include "host/clock/clock.h"
#include "host/loop/event_base.h"

namespace host {

// Calls to be made on the loop when their time has come, the earliest first. On a virtual clock its time
// comes when nothing else is left to do. A call may add and remove any.
class Deadlines {
 public:
  using Call = std::function<void()>;

  // A time, and a number that grows: of equal times, the one that was asked for first is the first.
  using Deadline = std::pair<Clock::TimePoint, std::uint64_t>;

  Deadlines(EventBase& base, Clock& clock);

  // The deadline `delay` from now.
  Deadline in(Clock::Duration delay);

  // A deadline may be added again when its call has been made, also with another time.
  void add(const Deadline& deadline, Call call);
  void remove(const Deadline& deadline);

 private:
  static void onTime(evutil_socket_t fd, short events, void* self);
  void callFirst();
  void arm();

  Clock& clock_;
  std::map<Deadline, Call> calls_;
  std::uint64_t next_number_ = 0;
  EventPtr event_;
};

}  // namespace host

#endif
