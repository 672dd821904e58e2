// SPDX-License-Identifier: MIT
#include "host/clock/clock.h"

#include <algorithm>
#include <cstdio>
#include <ctime>

namespace host {

using std::chrono::steady_clock;
using std::chrono::system_clock;

namespace {

constexpr Clock::Duration kLongestUptime = std::chrono::hours(24) * 365 * 100;

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
  return time + std::min(delay, start_ + kLongestUptime - time);
}

bool Clock::reach(TimePoint time) {
  if (isVirtual()) virtual_now_ = std::max(virtual_now_, time);
  return now() >= time;
}

std::string isoTime(std::chrono::system_clock::time_point time) {
  using std::chrono::milliseconds;
  const auto since = std::chrono::floor<milliseconds>(time.time_since_epoch());
  const auto seconds = std::chrono::floor<std::chrono::seconds>(since);
  const auto ms = static_cast<int>((since - seconds).count());
  const auto calendar = static_cast<std::time_t>(seconds.count());
  std::tm utc{};
  gmtime_r(&calendar, &utc);
  char date[sizeof "2026-01-31T12:00:00" + 16];
  std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", &utc);
  char text[sizeof date + sizeof ".250Z"];
  std::snprintf(text, sizeof text, "%s.%03dZ", date, ms);
  return text;
}

}  // namespace host
