// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CLOCK_CLOCK_H
#define CPP2C_HOST_CLOCK_CLOCK_H

#include <chrono>
#include <string>

namespace host {

// The time by which the loop's deadlines and the log go: the machine's, or a virtual one, which stands still
// until it is sent to the next deadline.
class Clock {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;
  using Duration = TimePoint::duration;
  enum class Kind { kReal, kVirtual };

  explicit Clock(Kind kind = Kind::kReal);

  bool isVirtual() const { return kind_ == Kind::kVirtual; }
  TimePoint now() const;

  // Virtual: the date and time at the start, and what has passed since.
  std::chrono::system_clock::time_point wallTime() const;

  // `delay` after `time`, but never so late that a sum of times could overflow: virtual years pass quickly.
  TimePoint later(TimePoint time, Duration delay) const;

  // How long to wait for a time. A virtual clock need not wait.
  Duration waitFor(TimePoint time) const;

  // Whether the time has come. To a virtual clock it comes by asking.
  bool reach(TimePoint time);

 private:
  const Kind kind_;
  const TimePoint start_;
  const std::chrono::system_clock::time_point wall_start_;
  TimePoint virtual_now_;
};

// ISO 8601 in UTC with milliseconds: "2026-01-31T12:00:00.250Z".
std::string isoTime(std::chrono::system_clock::time_point time);

}  // namespace host

#endif
