// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_TIMER_TIMERS_H
#define CPP2C_HOST_TIMER_TIMERS_H

#include <map>

#include "host/registration/registry.h"
#include "host/timer/deadlines.h"

class ITimer;

namespace host {

// Timers on the loop. A timer must exist while it is armed; it may be re-armed or disarmed when it expires.
class Timers {
 public:
  Timers(Deadlines& deadlines, const Clock& clock, Registry& registry);

  // Arms or re-arms the timer. Times are in milliseconds: `first` until the first expiry, negative to disarm;
  // `period` between later expiries, 0 for none; `zero` must be 0. timeArrive() receives the number of
  // expiries since its last call, which is more than one if the loop was held.
  //
  // Timers that expire at the same time are called in the order in which they were armed.
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
