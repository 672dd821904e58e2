// SPDX-License-Identifier: MIT
#include "host/clock/clock.h"

#include <chrono>

#include <gtest/gtest.h>

#include "host/include/cpp2c_host.h"
#include "host/log/log_service.h"
#include "tests/support/temporary_folder.h"

namespace host {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;

TEST(ClockTest, RealClockIsTheSystemClock) {
  const Clock clock;
  const auto steady = std::chrono::steady_clock::now();
  const auto wall = std::chrono::system_clock::now();
  EXPECT_FALSE(clock.isVirtual());
  EXPECT_GE(clock.now(), steady);
  EXPECT_GE(clock.wallTime(), wall);
}

TEST(ClockTest, RealClockDoesNotReachAFutureTime) {
  Clock clock;
  EXPECT_FALSE(clock.reach(clock.now() + hours(1)));
  EXPECT_TRUE(clock.reach(clock.now()));
}

TEST(ClockTest, VirtualClockMovesOnlyWhenATimeIsReached) {
  Clock clock(Clock::Kind::kVirtual);
  const auto start = clock.now();
  EXPECT_TRUE(clock.isVirtual());
  EXPECT_EQ(clock.now(), start);
  EXPECT_TRUE(clock.reach(start + hours(1)));
  EXPECT_EQ(clock.now(), start + hours(1));
}

TEST(ClockTest, VirtualClockDoesNotGoBack) {
  Clock clock(Clock::Kind::kVirtual);
  const auto start = clock.now();
  clock.reach(start + hours(2));
  EXPECT_TRUE(clock.reach(start + hours(1)));
  EXPECT_EQ(clock.now(), start + hours(2));
}

TEST(ClockTest, VirtualWallTimeFollowsVirtualTime) {
  Clock clock(Clock::Kind::kVirtual);
  const auto start = clock.wallTime();
  clock.reach(clock.now() + milliseconds(86400001));
  EXPECT_EQ(clock.wallTime() - start, milliseconds(86400001));
}

TEST(ClockTest, DistantTimeDoesNotOverflow) {
  Clock clock(Clock::Kind::kVirtual);
  const auto start = clock.now();
  EXPECT_EQ(clock.later(start, hours(1)), start + hours(1));
  const auto last = clock.later(start, Clock::Duration::max());
  EXPECT_GT(last, start + hours(24) * 365 * 50);
  EXPECT_EQ(clock.later(last, hours(1)), last);
  clock.reach(last);
  EXPECT_GT(clock.wallTime(), std::chrono::system_clock::now());
}

TEST(ClockTest, LogRecordsHaveTheTimeOfTheClock) {
  const TemporaryFolder folder;
  Clock clock(Clock::Kind::kVirtual);
  LogService log(C_LOG_INFO, folder.file("log"), clock);
  log.record("m", C_LOG_INFO, "today");
  clock.reach(clock.now() + hours(24) * 365 * 60);
  log.record("m", C_LOG_INFO, "in sixty years");
  const std::string today = folder.read("log").substr(0, 4);
  const std::string then = folder.read("log").substr(folder.read("log").find('\n') + 1, 4);
  EXPECT_GE(std::stoi(then) - std::stoi(today), 59) << folder.read("log");
}

}  // namespace

}  // namespace host
