// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_LOOP_EVENT_BASE_H
#define CPP2C_HOST_LOOP_EVENT_BASE_H

#include <event2/event.h>

#include <chrono>
#include <memory>

class ILog;

namespace host {

// The one libevent loop. Everything that waits, waits here.
class EventBase {
 public:
  // The priority of an event that has its turn only when nothing else is ready. All others have the middle
  // one.
  static constexpr int kLastPriority = 2;

  // What libevent has to say goes to `log` from now on.
  explicit EventBase(ILog& log);
  ~EventBase();
  EventBase(const EventBase&) = delete;
  EventBase& operator=(const EventBase&) = delete;

  event_base* get() const { return base_.get(); }

 private:
  struct Free {
    void operator()(event_base* base) const { event_base_free(base); }
  };

  std::unique_ptr<event_base, Free> base_;
};

// Something that the loop waits for; it stops waiting when this goes.
struct FreeEvent {
  void operator()(event* waiting) const { event_free(waiting); }
};
using EventPtr = std::unique_ptr<event, FreeEvent>;

// Rounded up to a microsecond, so that a wait is never too short.
timeval timevalOf(std::chrono::nanoseconds duration);

// Calls a function on the loop every `period` for as long as the event exists. Throws util::Error.
EventPtr callEvery(EventBase& base, std::chrono::milliseconds period, event_callback_fn call, void* argument);

}  // namespace host

#endif
