// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_TIMER_TIMERS_H
#define CPP2C_HOST_TIMER_TIMERS_H

#include <map>

#include "host/registration/registry.h"
#include "host/timer/deadlines.h"

class ITimer;

namespace host {

// Timers on the loop. A timer is touched only when it expires, and may then be armed anew or disarmed.
class Timers {
 public:
  Timers(Deadlines& deadlines, const Clock& clock, Registry& registry);

  // Arms the timer, anew if it is armed. Times are in milliseconds: `first` to the first expiry, negative to
  // disarm; `period` between later ones, 0 for none; `zero` must be 0. timeArrive() is told how many expiries
  // there were since it was last called, which is more than one after the loop has been held up.
  //
  // Of timers that expire at the same time, the one that was armed first is called first.
  int set(int first, int zero, int period, ITimer* timer);

 private:
  struct Armed {
    Deadlines::Deadline next;
    Clock::Duration period;
    RegistrationHandle registration;
  };

  void arm(ITimer* timer, const Deadlines::Deadline& next);
  void disarm(ITimer* timer);
  void expire(ITimer* timer);
  int countExpiries(Armed& armed) const;

  Deadlines& deadlines_;
  const Clock& clock_;
  Registry& registry_;
  std::map<ITimer*, Armed> armed_;
};

}  // namespace host

#endif
