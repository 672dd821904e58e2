// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_SCRIPT_OUTAGE_H
#define CPP2C_HOST_SCRIPT_OUTAGE_H

#include <algorithm>

#include "host/clock/clock.h"

// A time in which the context is not available, or a number of calls that do not reach it.
class Outage {
 public:
  void lastUntil(Clock::TimePoint end) { end_ = std::max(end_, end); }
  void lastForCalls(int calls) { calls_ = std::max(calls_, calls); }

  bool isOver(Clock::TimePoint now) const { return now >= end_ && calls_ == 0; }

  // Whether a call does not reach the context, which is then one of the number.
  bool stopsCall(Clock::TimePoint now) {
    const bool stops = !isOver(now);
    if (calls_ > 0) calls_--;
    return stops;
  }

 private:
  Clock::TimePoint end_ = Clock::TimePoint::min();
  int calls_ = 0;
};

#endif
