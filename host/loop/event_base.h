// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_LOOP_EVENT_BASE_H
#define CPP2C_HOST_LOOP_EVENT_BASE_H

#include <event2/event.h>
#include <sys/types.h>

#include <chrono>
#include <memory>

class ILog;

namespace host {

// The libevent loop. All waiting for events happens here; only shell commands are waited for elsewhere.
class EventBase {
 public:
  // Priority of an event that is handled only when no other event is ready. All other events have the middle
  // priority.
  static constexpr int kLastPriority = 2;

  // Writes libevent's messages to `log` from now on.
  explicit EventBase(ILog& log);
  ~EventBase();
  EventBase(const EventBase&) = delete;
  EventBase& operator=(const EventBase&) = delete;

  event_base* get() const { return base_.get(); }

  // To be called before watches change and before the loop runs. A forked process shares the kernel's table
  // of watched descriptors with its parent; this gives it one of its own, with the same watches. Returns
  // false if that fails.
  bool separateFromParent();

 private:
  struct Free {
    void operator()(event_base* base) const { event_base_free(base); }
  };

  std::unique_ptr<event_base, Free> base_;
  pid_t process_;  // that uses the table
};

// An event that the loop waits for until the pointer frees it.
struct FreeEvent {
  void operator()(event* waited_for) const { event_free(waited_for); }
};
using EventPtr = std::unique_ptr<event, FreeEvent>;

// Rounds up to whole microseconds, so that a wait is never too short.
timeval timevalOf(std::chrono::nanoseconds duration);

// Calls a function on the loop every `period` while the returned event exists. Throws util::Error.
EventPtr callEvery(EventBase& base, std::chrono::milliseconds period, event_callback_fn callback,
                   void* argument);

}  // namespace host

#endif
