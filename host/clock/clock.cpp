// SPDX-License-Identifier: MIT
#include "host/clock/clock.h"

#include <algorithm>

using std::chrono::steady_clock;
using std::chrono::system_clock;

namespace {

constexpr Clock::Duration kLongest = std::chrono::hours(24) * 365 * 100;

}  // namespace

Clock::Clock(Kind kind)
    : kind_(kind), start_(steady_clock::now()), wall_start_(system_clock::now()), virtual_now_(start_) {}

Clock::TimePoint Clock::now() const {
  return isVirtual() ? virtual_now_ : steady_clock::now();
}

system_clock::time_point Clock::wallTime() const {
  if (!isVirtual()) return system_clock::now();
  return wall_start_ + std::chrono::duration_cast<system_clock::duration>(virtual_now_ - start_);
}

Clock::TimePoint Clock::later(TimePoint time, Duration delay) const {
  return time + std::min(delay, start_ + kLongest - time);
}

Clock::Duration Clock::waitFor(TimePoint time) const {
  return isVirtual() ? Duration::zero() : std::max(time - now(), Duration::zero());
}

bool Clock::reach(TimePoint time) {
  if (isVirtual()) virtual_now_ = std::max(virtual_now_, time);
  return now() >= time;
}
