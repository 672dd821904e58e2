// SPDX-License-Identifier: MIT
#include "host/timer/timers.h"

#include <chrono>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "host/include/cpp2c_host.h"
#include "include_c"
#include "tests/host/support/running_loop.h"

namespace host {
namespace {

using SteadyClock = std::chrono::steady_clock;

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
  explicit TimersTest(Clock::Kind kind = Clock::Kind::kReal) : clock_(kind) {}

  // Runs the loop for a time, and on until every timer that is due has been called.
  void runFor(int ms) {
    Timer end;
    end.then = [this] { stopWhenIdle(); };
    EXPECT_EQ(timers_.set(ms, 0, 0, &end), C_RESULT_OK);
    loop_.run();
  }

  Clock clock_;
  Deadlines deadlines_{base_, clock_};
  Timers timers_{deadlines_, clock_, registry_};
  Timer timer_;
};

TEST_F(TimersTest, TimerExpiresAfterItsTime) {
  const auto start = SteadyClock::now();
  timer_.then = [this] { loop_.stop(); };
  EXPECT_EQ(timers_.set(20, 0, 0, &timer_), C_RESULT_OK);
  loop_.run();
  EXPECT_GE(SteadyClock::now() - start, std::chrono::milliseconds(20));
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
    const auto until = SteadyClock::now() + std::chrono::milliseconds(20);
    while (timer_.values.size() == 1 && SteadyClock::now() < until) {
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
  timers_.set(100, 0, 0, &timer_);
  timers_.set(1, 0, 0, &other);
  runFor(101);
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

TEST_F(TimersTest, TimersWithTheSameTimeAreCalledAsTheyWereArmed) {
  std::vector<int> order;
  Timer timers[3];
  for (int i = 0; i < 3; i++) {
    timers[i].then = [&order, i] { order.push_back(i); };
    timers_.set(0, 0, 0, &timers[2 - i]);
  }
  runFor(1);
  EXPECT_EQ(order, (std::vector<int>{2, 1, 0}));
}

TEST_F(TimersTest, TimerThatIsArmedByASlowCallbackDoesNotExpireEarly) {
  using std::chrono::milliseconds;
  SteadyClock::time_point armed;
  SteadyClock::time_point expired;
  Timer other;
  timer_.then = [&] {
    const auto until = SteadyClock::now() + milliseconds(20);
    while (SteadyClock::now() < until) {
    }
    armed = SteadyClock::now();
    timers_.set(10, 0, 0, &other);
  };
  other.then = [&] {
    expired = SteadyClock::now();
    loop_.stop();
  };
  timers_.set(0, 0, 0, &timer_);
  loop_.run();
  EXPECT_GE(expired - armed, milliseconds(10));
}

class VirtualTimersTest : public TimersTest {
 protected:
  VirtualTimersTest() : TimersTest(Clock::Kind::kVirtual) {}

  // Milliseconds of virtual time since the test began.
  long elapsed() const {
    using std::chrono::milliseconds;
    return static_cast<long>(std::chrono::duration_cast<milliseconds>(clock_.now() - start_).count());
  }

 private:
  const Clock::TimePoint start_ = clock_.now();
};

TEST_F(VirtualTimersTest, DayOfSecondsIsComplete) {
  constexpr int kDay = 24 * 60 * 60 * 1000;
  timers_.set(1000, 0, 1000, &timer_);
  runFor(kDay);
  EXPECT_EQ(timer_.values, std::vector<int>(86400, 1));
  EXPECT_EQ(elapsed(), kDay);
}

TEST_F(VirtualTimersTest, TwoTimersAreCalledInTheOrderOfTheirTimes) {
  std::vector<std::pair<char, long>> calls;
  Timer other;
  timer_.then = [&] { calls.emplace_back('a', elapsed()); };
  other.then = [&] { calls.emplace_back('b', elapsed()); };
  timers_.set(300, 0, 300, &timer_);
  timers_.set(200, 0, 200, &other);
  runFor(1200);
  const std::vector<std::pair<char, long>> expected = {{'b', 200},  {'a', 300}, {'b', 400}, {'a', 600},
                                                       {'b', 600},  {'b', 800}, {'a', 900}, {'b', 1000},
                                                       {'a', 1200}, {'b', 1200}};
  EXPECT_EQ(calls, expected);
}

TEST_F(VirtualTimersTest, WhatIsReadyComesBeforeTimeMovesOn) {
  const Pipe pipe;
  std::vector<long> times;
  Handler handler([&](short, int) {
    pipe.take();
    times.push_back(elapsed());
    if (times.size() < 5) pipe.put();
  });
  std::size_t handled = 0;
  timer_.then = [&] { handled = times.size(); };
  timers_.set(1, 0, 0, &timer_);
  loop_.addFd(pipe.reading(), C_LOOP_READ, &handler);
  pipe.put();
  runFor(2);
  EXPECT_EQ(times, std::vector<long>(5, 0));
  EXPECT_EQ(handled, 5U);
}

TEST_F(VirtualTimersTest, WhatATimerMakesReadyComesBeforeTheNextTimer) {
  const Pipe pipe;
  std::vector<std::string> order;
  Handler handler([&](short, int) {
    pipe.take();
    order.emplace_back("descriptor");
  });
  Timer other;
  timer_.then = [&] {
    order.emplace_back("first");
    pipe.put();
  };
  other.then = [&] { order.emplace_back("second"); };
  loop_.addFd(pipe.reading(), C_LOOP_READ, &handler);
  timers_.set(1, 0, 0, &timer_);
  timers_.set(1, 0, 0, &other);
  runFor(2);
  EXPECT_EQ(order, (std::vector<std::string>{"first", "descriptor", "second"}));
}

TEST_F(VirtualTimersTest, TimeStandsStillInACallback) {
  timer_.then = [&] {
    const auto until = SteadyClock::now() + std::chrono::milliseconds(5);
    while (SteadyClock::now() < until) {
    }
  };
  timers_.set(1, 0, 1, &timer_);
  runFor(3);
  EXPECT_EQ(timer_.values, (std::vector<int>{1, 1, 1}));
}

TEST_F(VirtualTimersTest, WithoutTimersTheLoopWaitsForDescriptors) {
  stopWhenIdle();
  EXPECT_EQ(loop_.run(), C_RESULT_OK);
  EXPECT_EQ(elapsed(), 0);
}

TEST(TimersHeartbeatTest, SlowTimerIsReported) {
  static Heartbeat::TimePoint now;
  RecordingLog log;
  Heartbeat heartbeat(log, std::chrono::milliseconds(10), [] { return now; });
  EventBase base(log);
  Registry registry(heartbeat);
  EventLoop loop(base, registry);
  Clock clock;
  Deadlines deadlines(base, clock);
  Timers timers(deadlines, clock, registry);
  Timer slow;
  slow.then = [&] {
    now += std::chrono::milliseconds(25);
    loop.stop();
  };
  timers.set(0, 0, 0, &slow);
  loop.run();
  EXPECT_EQ(log.records, std::vector<std::string>{
                             "4 heartbeat: the callback host::(anonymous namespace)::Timer of timer after "
                             "0 ms held the loop for 25 ms"});
}

}  // namespace

}  // namespace host
