// SPDX-License-Identifier: MIT
#include "binding/globals.h"
#include "binding/timer.h"
#include "tests/support/recording_test.h"

namespace {

int expired() {
  return 1;
}

int expiredToo() {
  return 2;
}

using TimerStateTest = RecordingTest;

TEST(NewTimerTest, HasNoCallback) {
  EXPECT_EQ(__NtpTimerCB().callback, nullptr);
}

TEST_F(TimerStateTest, ContextReceivesTheOnlyAdapter) {
  c_context_set_timer(1, 2, expired);
  EXPECT_EQ(context.timers.at(0), &g_timer);
}

TEST_F(TimerStateTest, CallbackIsReplaced) {
  c_context_set_timer(1, 2, expired);
  EXPECT_EQ(g_timer.callback, expired);
  c_context_set_timer(1, 2, expiredToo);
  EXPECT_EQ(g_timer.callback, expiredToo);
}

TEST_F(TimerStateTest, NullCallbackIsStored) {
  c_context_set_timer(1, 2, expired);
  c_context_set_timer(1, 2, nullptr);
  EXPECT_EQ(g_timer.callback, nullptr);
}

TEST_F(TimerStateTest, CallbackIsKeptWithoutAContext) {
  c_context_set_timer(1, 2, expired);
  releaseContext(nullptr);
  proxy.instance = nullptr;
  c_context_set_timer(1, 2, expiredToo);
  EXPECT_EQ(g_timer.callback, expired);
}

}  // namespace
