// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CLOCK_CLOCK_H
#define CPP2C_HOST_CLOCK_CLOCK_H

#include <chrono>
#include <string>

namespace host {

// The clock of the loop's deadlines and of the log: the machine's clock, or a virtual clock, which stands
// still until it is advanced to the next deadline.
class Clock {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;
  using Duration = TimePoint::duration;
  enum class Kind { kReal, kVirtual };

  explicit Clock(Kind kind = Kind::kReal);

  bool isVirtual() const { return kind_ == Kind::kVirtual; }
  TimePoint now() const;

  // The date and time. On a virtual clock: those of the start plus the virtual time since then.
  std::chrono::system_clock::time_point wallTime() const;

  // Returns `time` plus `delay`, but at most 100 years after the start, so that no sum of times overflows.
  // Virtual time can reach this limit.
  TimePoint later(TimePoint time, Duration delay) const;

  // Returns whether `time` has come. A virtual clock first advances to `time`.
  bool reach(TimePoint time);

 private:
  const Kind kind_;
  const TimePoint start_;
  const std::chrono::system_clock::time_point wall_start_;
  TimePoint virtual_now_;
};

// Formats a time as ISO 8601 in UTC with milliseconds: "2026-01-31T12:00:00.250Z".
std::string isoTime(std::chrono::system_clock::time_point time);

}  // namespace host

#endif
