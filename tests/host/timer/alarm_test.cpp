// SPDX-License-Identifier: MIT
#include "host/timer/alarm.h"

#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <functional>
#include <optional>

#include <gtest/gtest.h>

#include "tests/host/support/memory_log.h"

namespace host {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

class AlarmTest : public testing::Test {
 protected:
  // Handles one turn of the loop, which waits for an event.
  void turn() { event_base_loop(base_.get(), EVLOOP_ONCE); }

  // Handles what is ready now.
  void turnWithoutWaiting() { event_base_loop(base_.get(), EVLOOP_ONCE | EVLOOP_NONBLOCK); }

  // Whether `call` returns true in a forked process.
  static bool inChild(const std::function<bool()>& call) {
    const pid_t child = fork();
    if (child == 0) _exit(call() ? 0 : 1);
    int status = -1;
    return waitpid(child, &status, 0) == child && status == 0;
  }

  static void onTime(evutil_socket_t /*fd*/, short /*events*/, void* self) {
    static_cast<AlarmTest*>(self)->calls_++;
  }

  MemoryLog log_;
  EventBase base_{log_};
  Alarm alarm_{base_, onTime, this};
  int calls_ = 0;
};

TEST_F(AlarmTest, CallsOnceTheTimeHasCome) {
  const Clock::time_point time = Clock::now() + milliseconds(20);
  alarm_.set(time);
  turnWithoutWaiting();
  EXPECT_EQ(calls_, 0);
  turn();
  EXPECT_EQ(calls_, 1);
  EXPECT_GE(Clock::now(), time);
}

TEST_F(AlarmTest, CallsAtOnceForATimeInThePast) {
  alarm_.set(Clock::now() - hours(1));
  turnWithoutWaiting();
  EXPECT_EQ(calls_, 1);
}

TEST_F(AlarmTest, CallsInEachTurnUntilAnotherTimeIsSet) {
  alarm_.set(Clock::now());
  turn();
  turn();
  EXPECT_EQ(calls_, 2);
  alarm_.set(Clock::now() + hours(1));
  turnWithoutWaiting();
  EXPECT_EQ(calls_, 2);
}

TEST_F(AlarmTest, DoesNotCallWithoutATime) {
  alarm_.set(Clock::now());
  alarm_.set(std::nullopt);
  turnWithoutWaiting();
  EXPECT_EQ(calls_, 0);
}

TEST_F(AlarmTest, ForkedProcessSetsATimeOfItsOwn) {
  alarm_.set(Clock::now() + hours(1));
  EXPECT_TRUE(inChild([this] {
    alarm_.set(Clock::now());
    turn();
    return calls_ == 1;
  }));
  turnWithoutWaiting();
  EXPECT_EQ(calls_, 0);
  alarm_.set(Clock::now());
  turn();
  EXPECT_EQ(calls_, 1);
}

TEST_F(AlarmTest, ForkedProcessThatStopsItsAlarmLeavesThatOfItsParent) {
  alarm_.set(Clock::now());
  EXPECT_TRUE(inChild([this] {
    alarm_.set(std::nullopt);
    turnWithoutWaiting();
    return calls_ == 0;
  }));
  turn();
  EXPECT_EQ(calls_, 1);
}

}  // namespace

}  // namespace host
