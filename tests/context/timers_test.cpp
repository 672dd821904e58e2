// SPDX-License-Identifier: MIT
#include "context/timer/timers.h"

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "include_c"
#include "tests/context/running_loop.h"

namespace {

using Clock = std::chrono::steady_clock;

class Timer final : public ITimer {
 public:
  int timeArrive(int value) override {
    values.push_back(value);
    if (then) then();
    return 0;
  }

  std::vector<int> values;
  std::function<void()> then;
};

class TimersTest : public LoopFixture {
 protected:
  // Runs the loop for a time, and on until every timer that is due has been called.
  void runFor(int ms) {
    Timer end;
    end.then = [this] { stopWhenIdle(); };
    EXPECT_EQ(timers_.set(ms, 0, 0, &end), C_RESULT_OK);
    loop_.run();
  }

  Timers timers_{base_, registry_};
  Timer timer_;
};

TEST_F(TimersTest, TimerExpiresAfterItsTime) {
  const auto start = Clock::now();
  timer_.then = [this] { loop_.stop(); };
  EXPECT_EQ(timers_.set(20, 0, 0, &timer_), C_RESULT_OK);
  loop_.run();
  EXPECT_GE(Clock::now() - start, std::chrono::milliseconds(20));
  EXPECT_EQ(timer_.values, std::vector<int>{1});
}

TEST_F(TimersTest, TimeOfZeroExpiresAtOnce) {
  timer_.then = [this] { loop_.stop(); };
  timers_.set(0, 0, 0, &timer_);
  loop_.run();
  EXPECT_EQ(timer_.values.size(), 1U);
}

TEST_F(TimersTest, WithoutPeriodItExpiresOnce) {
  timers_.set(1, 0, 0, &timer_);
  runFor(20);
  EXPECT_EQ(timer_.values.size(), 1U);
}

TEST_F(TimersTest, WithPeriodItExpiresAgainAndAgain) {
  timer_.then = [this] {
    if (timer_.values.size() == 3) loop_.stop();
  };
  timers_.set(0, 0, 1, &timer_);
  loop_.run();
  EXPECT_EQ(timer_.values.size(), 3U);
}

TEST_F(TimersTest, ExpiriesWhileTheLoopIsHeldUpAreCounted) {
  timer_.then = [this] {
    const auto until = Clock::now() + std::chrono::milliseconds(20);
    while (timer_.values.size() == 1 && Clock::now() < until) {
    }
    if (timer_.values.size() == 2) loop_.stop();
  };
  timers_.set(0, 0, 5, &timer_);
  loop_.run();
  EXPECT_GE(timer_.values[0], 1);
  EXPECT_GE(timer_.values[1], 3);
}

TEST_F(TimersTest, SettingAgainArmsAnew) {
  timers_.set(1, 0, 1, &timer_);
  timers_.set(60000, 0, 0, &timer_);
  runFor(20);
  EXPECT_TRUE(timer_.values.empty());
}

TEST_F(TimersTest, NegativeTimeDisarms) {
  timers_.set(1, 0, 1, &timer_);
  EXPECT_EQ(timers_.set(-1, 0, 0, &timer_), C_RESULT_OK);
  runFor(20);
  EXPECT_TRUE(timer_.values.empty());
}

TEST_F(TimersTest, DisarmingATimerThatIsNotArmedDoesNoHarm) {
  EXPECT_EQ(timers_.set(-1, 0, 0, &timer_), C_RESULT_OK);
}

TEST_F(TimersTest, TimerMayDisarmItself) {
  timer_.then = [this] { timers_.set(-1, 0, 0, &timer_); };
  timers_.set(0, 0, 1, &timer_);
  runFor(20);
  EXPECT_EQ(timer_.values.size(), 1U);
}

TEST_F(TimersTest, TimerMayArmItselfAnew) {
  timer_.then = [this] {
    if (timer_.values.size() < 3) {
      timers_.set(1, 0, 0, &timer_);
    } else {
      loop_.stop();
    }
  };
  timers_.set(1, 0, 0, &timer_);
  loop_.run();
  EXPECT_EQ(timer_.values, (std::vector<int>{1, 1, 1}));
}

// Both expire before the loop looks, and whichever is called first disarms the other one.
TEST_F(TimersTest, TimerThatIsDisarmedMeanwhileIsNotCalled) {
  Timer other;
  timer_.then = [&] { timers_.set(-1, 0, 0, &other); };
  other.then = [&] { timers_.set(-1, 0, 0, &timer_); };
  timers_.set(0, 0, 0, &timer_);
  timers_.set(0, 0, 0, &other);
  runFor(20);
  EXPECT_EQ(timer_.values.size() + other.values.size(), 1U);
}

TEST_F(TimersTest, EachTimerHasItsOwnTime) {
  Timer other;
  std::vector<std::string> order;
  timer_.then = [&] { order.emplace_back("later"); };
  other.then = [&] { order.emplace_back("sooner"); };
  timers_.set(10, 0, 0, &timer_);
  timers_.set(1, 0, 0, &other);
  runFor(30);
  EXPECT_EQ(order, (std::vector<std::string>{"sooner", "later"}));
}

TEST_F(TimersTest, LongestTimeIsAccepted) {
  EXPECT_EQ(timers_.set(2147483647, 0, 2147483647, &timer_), C_RESULT_OK);
  runFor(1);
  EXPECT_TRUE(timer_.values.empty());
}

TEST_F(TimersTest, BadArgumentsAreRefused) {
  EXPECT_EQ(timers_.set(1, 1, 0, &timer_), C_RESULT_PARAM);
  EXPECT_EQ(timers_.set(1, 0, -1, &timer_), C_RESULT_PARAM);
  EXPECT_EQ(timers_.set(1, 0, 0, nullptr), C_RESULT_PARAM);
}

TEST_F(TimersTest, BadArgumentsLeaveTheTimerAsItIs) {
  timers_.set(1, 0, 0, &timer_);
  timers_.set(1, 0, -1, &timer_);
  runFor(20);
  EXPECT_EQ(timer_.values.size(), 1U);
}

TEST(TimersHeartbeatTest, SlowTimerIsReported) {
  static Heartbeat::TimePoint now;
  RecordingLog log;
  Heartbeat heartbeat(log, std::chrono::milliseconds(10), [] { return now; });
  EventBase base(log);
  Registry registry(heartbeat);
  EventLoop loop(base, registry);
  Timers timers(base, registry);
  Timer slow;
  slow.then = [&] {
    now += std::chrono::milliseconds(25);
    loop.stop();
  };
  timers.set(0, 0, 0, &slow);
  loop.run();
  EXPECT_EQ(log.records,
            std::vector<std::string>{"4 heartbeat: the callback (anonymous namespace)::Timer of timer after "
                                     "0 ms held the loop for 25 ms"});
}

}  // namespace
