// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXT_TIMER_TIMERS_H
#define CPP2C_CONTEXT_TIMER_TIMERS_H

#include <map>
#include <memory>

#include "context/loop/event_base.h"
#include "context/registration/registry.h"

class ITimer;

// Timers on the loop. A timer is touched only when it expires, and may then be armed anew or disarmed.
class Timers {
 public:
  Timers(EventBase& base, Registry& registry);
  ~Timers();

  // Arms the timer, anew if it is armed. Times are in milliseconds: `first` to the first expiry, negative to
  // disarm; `period` between later ones, 0 for none; `zero` must be 0. timeArrive() is told how many expiries
  // there were since it was last called, which is more than one after the loop has been held up.
  int set(int first, int zero, int period, ITimer* timer);

 private:
  class Armed;

  EventBase& base_;
  Registry& registry_;
  std::map<ITimer*, std::unique_ptr<Armed>> armed_;
};

#endif
