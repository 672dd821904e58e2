// SPDX-License-Identifier: MIT
// The timer: what reaches the context, and which function an expiry calls.
#include <climits>

#include "tests/support/recording_test.h"

namespace {

int older_calls = 0;
int newer_calls = 0;

int older() {
  ++older_calls;
  return 17;
}

int newer() {
  ++newer_calls;
  return -18;
}

int rearming() {
  c_context_set_timer(1, 1, newer);
  return 19;
}

class TimerTest : public RecordingTest {
 protected:
  TimerTest() {
    older_calls = 0;
    newer_calls = 0;
  }
};

TEST_F(TimerTest, TimesAreTheFirstAndThirdArguments) {
  c_context_set_timer(500, 20, older);
  EXPECT_EQ(calls(), Calls({"context.setTimer(500, 0, 20, object)"}));
}

TEST_F(TimerTest, TimesArePassedUnchanged) {
  c_context_set_timer(INT_MIN, INT_MAX, older);
  EXPECT_EQ(calls(), Calls({"context.setTimer(-2147483648, 0, 2147483647, object)"}));
}

TEST_F(TimerTest, ReturnsTheResultOfTheContext) {
  log.results["context.setTimer"] = -6;
  EXPECT_EQ(c_context_set_timer(1, 2, older), -6);
}

TEST_F(TimerTest, SettingDoesNotCallTheCallback) {
  c_context_set_timer(1, 2, older);
  EXPECT_EQ(older_calls, 0);
}

TEST_F(TimerTest, ExpiryCallsTheCallbackAndReturnsItsResult) {
  c_context_set_timer(1, 2, older);
  EXPECT_EQ(context.timers.at(0)->timeArrive(0), 17);
  EXPECT_EQ(older_calls, 1);
}

TEST_F(TimerTest, EachExpiryCallsTheCallback) {
  c_context_set_timer(1, 2, older);
  for (int expiry = 0; expiry < 3; ++expiry) context.timers.at(0)->timeArrive(expiry);
  EXPECT_EQ(older_calls, 3);
}

TEST_F(TimerTest, ExpiryValueIsIgnored) {
  c_context_set_timer(1, 2, older);
  EXPECT_EQ(context.timers.at(0)->timeArrive(INT_MIN), 17);
  EXPECT_EQ(context.timers.at(0)->timeArrive(INT_MAX), 17);
  EXPECT_EQ(calls(), Calls({"context.setTimer(1, 0, 2, object)"}));
}

TEST_F(TimerTest, AllTimersShareOneAdapter) {
  c_context_set_timer(1, 2, older);
  c_context_set_timer(3, 4, newer);
  EXPECT_EQ(context.timers.at(0), context.timers.at(1));
}

TEST_F(TimerTest, ExpiryCallsTheCallbackSetLast) {
  c_context_set_timer(1, 2, older);
  c_context_set_timer(3, 4, newer);
  EXPECT_EQ(context.timers.at(0)->timeArrive(0), -18);
  EXPECT_EQ(context.timers.at(1)->timeArrive(0), -18);
  EXPECT_EQ(older_calls, 0);
  EXPECT_EQ(newer_calls, 2);
}

TEST_F(TimerTest, CallbackIsStoredBeforeTheContextIsCalled) {
  c_context_set_timer(1, 2, older);
  log.on_call = [this](const std::string&) { context.timers.back()->timeArrive(0); };
  c_context_set_timer(3, 4, newer);
  EXPECT_EQ(older_calls, 0);
  EXPECT_EQ(newer_calls, 1);
}

TEST_F(TimerTest, CallbackIsReplacedEvenIfTheContextFails) {
  c_context_set_timer(1, 2, older);
  log.results["context.setTimer"] = -1;
  c_context_set_timer(3, 4, newer);
  EXPECT_EQ(context.timers.at(0)->timeArrive(0), -18);
}

TEST_F(TimerTest, CallbackMaySetTheTimerAgain) {
  c_context_set_timer(1, 2, rearming);
  EXPECT_EQ(context.timers.at(0)->timeArrive(0), 19);
  EXPECT_EQ(context.timers.at(0)->timeArrive(0), -18);
}

TEST_F(TimerTest, NullCallbackReachesTheContext) {
  EXPECT_EQ(c_context_set_timer(0, 0, nullptr), 0);
  EXPECT_EQ(calls(), Calls({"context.setTimer(0, 0, 0, object)"}));
}

TEST_F(TimerTest, WithoutAContextThePreviousCallbackIsKept) {
  c_context_set_timer(1, 2, older);
  releaseContext(nullptr);
  proxy.instance = nullptr;
  log.results["context.setTimer"] = -6;
  EXPECT_EQ(c_context_set_timer(3, 4, newer), 0);
  ASSERT_EQ(context.timers.size(), 1U);
  EXPECT_EQ(context.timers[0]->timeArrive(0), 17);
}

TEST_F(TimerTest, AdapterAndCallbackSurviveTheTeardown) {
  c_context_set_timer(1, 2, older);
  c_context_deinit();
  EXPECT_EQ(context.timers.at(0)->timeArrive(0), 17);
}

}  // namespace
