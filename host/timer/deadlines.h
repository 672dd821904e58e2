// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_TIMER_DEADLINES_H
#define CPP2C_HOST_TIMER_DEADLINES_H

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <utility>

#include "host/clock/clock.h"
#include "host/loop/event_base.h"
#include "host/timer/alarm.h"

namespace host {

// Calls functions on the loop at their deadlines, the earliest first. A virtual clock advances to the next
// deadline when the loop has nothing else to do. A function may add and remove any deadline.
class Deadlines {
 public:
  using Callback = std::function<void()>;

  // A time and an increasing number: deadlines of the same time are ordered by their creation.
  using Deadline = std::pair<Clock::TimePoint, std::uint64_t>;

  Deadlines(EventBase& base, Clock& clock);

  // Creates the deadline `delay` from now, for add().
  Deadline in(Clock::Duration delay);

  // A deadline can be added again, also with another time, once its function has been called.
  void add(const Deadline& deadline, Callback callback);
  void remove(const Deadline& deadline);

 private:
  static void onTime(evutil_socket_t fd, short events, void* self);
  void callFirst();
  void arm();

  Clock& clock_;
  std::map<Deadline, Callback> callbacks_;
  decltype(callbacks_)::node_type spare_;  // lets a function that is called add itself again without memory
  std::uint64_t next_number_ = 0;
  std::optional<Alarm> alarm_;  // of the machine's clock
  EventPtr idle_;               // on a virtual clock: the loop has nothing else to do
};

}  // namespace host

#endif
