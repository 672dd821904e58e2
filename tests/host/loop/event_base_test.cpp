// SPDX-License-Identifier: MIT
#include "host/loop/event_base.h"

#include <chrono>

#include <gtest/gtest.h>

#include "tests/host/support/memory_log.h"

namespace host {
namespace {

using std::chrono::hours;
using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::nanoseconds;
using std::chrono::seconds;

microseconds durationOf(const timeval& time) {
  return seconds(time.tv_sec) + microseconds(time.tv_usec);
}

TEST(TimevalTest, SecondsAndMicrosecondsAreSeparate) {
  const timeval time = timevalOf(milliseconds(90250));
  EXPECT_EQ(time.tv_sec, 90);
  EXPECT_EQ(time.tv_usec, 250000);
}

TEST(TimevalTest, WholeSecondsHaveNoMicroseconds) {
  const timeval time = timevalOf(hours(24));
  EXPECT_EQ(time.tv_sec, 86400);
  EXPECT_EQ(time.tv_usec, 0);
}

TEST(TimevalTest, PartOfAMicrosecondIsRoundedUp) {
  EXPECT_EQ(durationOf(timevalOf(nanoseconds(1))), microseconds(1));
  EXPECT_EQ(durationOf(timevalOf(seconds(2) + nanoseconds(5001))), seconds(2) + microseconds(6));
}

TEST(TimevalTest, RoundingUpToAWholeSecondLeavesNoMicroseconds) {
  const timeval time = timevalOf(nanoseconds(1999999001));
  EXPECT_EQ(time.tv_sec, 2);
  EXPECT_EQ(time.tv_usec, 0);
}

TEST(TimevalTest, WholeMicrosecondsAreNotRounded) {
  EXPECT_EQ(durationOf(timevalOf(microseconds(1500007))), microseconds(1500007));
}

void doNothing(evutil_socket_t /*fd*/, short /*events*/, void* /*argument*/) {}

TEST(PeriodicEventTest, FirstCallIsDueAfterThePeriod) {
  MemoryLog log;
  EventBase base(log);
  const auto now = [] { return std::chrono::system_clock::now().time_since_epoch(); };
  const auto before = now();
  const EventPtr event = callEvery(base, milliseconds(90500), doNothing, nullptr);
  timeval due = {};
  ASSERT_NE(event_pending(event.get(), EV_TIMEOUT, &due), 0);
  // libevent computes this time from its own reading of the clock.
  constexpr milliseconds kTolerance{100};
  EXPECT_GE(durationOf(due) + kTolerance, before + milliseconds(90500));
  EXPECT_LE(durationOf(due) - kTolerance, now() + milliseconds(90500));
}

void count(evutil_socket_t /*fd*/, short /*events*/, void* calls) {
  ++*static_cast<int*>(calls);
}

TEST(PeriodicEventTest, FunctionIsCalledAgainAndAgain) {
  MemoryLog log;
  EventBase base(log);
  int calls = 0;
  const EventPtr event = callEvery(base, milliseconds(1), count, &calls);
  for (int i = 0; i < 3; i++) event_base_loop(base.get(), EVLOOP_ONCE);
  EXPECT_EQ(calls, 3);
}

}  // namespace

}  // namespace host
