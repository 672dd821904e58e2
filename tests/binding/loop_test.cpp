// SPDX-License-Identifier: MIT
// Watched file descriptors.
#include <cstdint>
#include <vector>

#include "tests/support/recording_test.h"

namespace {

// The calls of a callback. The user pointer points to it.
struct Readiness {
  std::vector<short> events;
  std::vector<int> values;
};

void note(void* user, short events, int value) {
  auto* readiness = static_cast<Readiness*>(user);
  readiness->events.push_back(events);
  readiness->values.push_back(value);
}

void noteNegative(void* user, short events, int value) {
  note(user, static_cast<short>(-events), -value);
}

void stopWatching(void* user, short /*events*/, int value) {
  c_loop_del_fd(value);
  ++*static_cast<int*>(user);
}

class LoopTest : public RecordingTest {
 protected:
  RecordingLoop& loop = context.loop;
  Readiness readiness;
};

TEST_F(LoopTest, AddPassesDescriptorAndMaskToTheLoop) {
  log.results["loop.addFd"] = 17;
  EXPECT_EQ(c_loop_add_fd(7, 0x12345, note, &readiness), 17);
  EXPECT_EQ(calls(), Calls({"context.getLoop()", "loop.addFd(7, 74565, object)"}));
}

TEST_F(LoopTest, NegativeDescriptorAndMaskAreNotChecked) {
  EXPECT_EQ(c_loop_add_fd(-1, -2, note, &readiness), 0);
  EXPECT_EQ(calls(), Calls({"context.getLoop()", "loop.addFd(-1, -2, object)"}));
}

TEST_F(LoopTest, ReadinessReachesTheCallback) {
  c_loop_add_fd(7, 1, note, &readiness);
  loop.handlers[0]->handler(6, 1000000);
  EXPECT_EQ(readiness.events, std::vector<short>({6}));
  EXPECT_EQ(readiness.values, std::vector<int>({1000000}));
}

TEST_F(LoopTest, ReadyMaskKeepsItsSign) {
  c_loop_add_fd(7, 1, note, &readiness);
  loop.handlers[0]->handler(INT16_MIN, -3);
  EXPECT_EQ(readiness.events, std::vector<short>({INT16_MIN}));
  EXPECT_EQ(readiness.values, std::vector<int>({-3}));
}

TEST_F(LoopTest, HandlerReturnsZero) {
  c_loop_add_fd(7, 1, note, &readiness);
  EXPECT_EQ(loop.handlers[0]->handler(1, 7), 0);
}

TEST_F(LoopTest, ReadinessWithoutACallbackIsIgnored) {
  EXPECT_EQ(c_loop_add_fd(7, 1, nullptr, &readiness), 0);
  ASSERT_EQ(loop.handlers.size(), 1U);
  EXPECT_EQ(loop.handlers[0]->handler(1, 7), 0);
}

TEST_F(LoopTest, AddingAgainKeepsTheAdapterAndCallsTheLoopAgain) {
  c_loop_add_fd(7, 1, note, &readiness);
  log.results["loop.addFd"] = -4;
  calls();
  EXPECT_EQ(c_loop_add_fd(7, 2, noteNegative, &readiness), -4);
  EXPECT_EQ(calls(), Calls({"context.getLoop()", "loop.addFd(7, 2, object)"}));
  ASSERT_EQ(loop.handlers.size(), 2U);
  EXPECT_EQ(loop.handlers[0], loop.handlers[1]);
}

TEST_F(LoopTest, AddingAgainReplacesCallbackAndUser) {
  Readiness newer;
  c_loop_add_fd(7, 1, note, &readiness);
  c_loop_add_fd(7, 1, noteNegative, &newer);
  loop.handlers[0]->handler(5, 7);
  EXPECT_TRUE(readiness.events.empty());
  EXPECT_EQ(newer.events, std::vector<short>({-5}));
}

TEST_F(LoopTest, AddingAgainWithNullRemovesTheCallback) {
  c_loop_add_fd(7, 1, note, &readiness);
  c_loop_add_fd(7, 1, nullptr, nullptr);
  EXPECT_EQ(loop.handlers[0]->handler(5, 7), 0);
  EXPECT_TRUE(readiness.events.empty());
}

TEST_F(LoopTest, CallbackAndUserAreSetBeforeTheLoopIsCalled) {
  log.on_call = [this](const std::string& call) {
    if (call == "loop.addFd(7, 1, object)") loop.handlers.back()->handler(1, 7);
  };
  c_loop_add_fd(7, 1, note, &readiness);
  EXPECT_EQ(readiness.values, std::vector<int>({7}));
}

TEST_F(LoopTest, EachDescriptorHasItsOwnAdapter) {
  Readiness other;
  c_loop_add_fd(7, 1, note, &readiness);
  c_loop_add_fd(8, 1, note, &other);
  loop.handlers[1]->handler(1, 8);
  EXPECT_TRUE(readiness.values.empty());
  EXPECT_EQ(other.values, std::vector<int>({8}));
}

TEST_F(LoopTest, AddWithoutALoopReturnsZeroAndStoresNothing) {
  c_loop_add_fd(7, 1, note, &readiness);
  context.missing.insert("getLoop");
  log.results["loop.addFd"] = 17;
  calls();
  EXPECT_EQ(c_loop_add_fd(7, 1, nullptr, nullptr), 0);
  EXPECT_EQ(calls(), Calls({"context.getLoop()"}));

  loop.handlers[0]->handler(1, 7);
  EXPECT_EQ(readiness.values, std::vector<int>({7})) << "The watch should be as it was.";
}

TEST_F(LoopTest, DelReachesTheLoop) {
  c_loop_add_fd(7, 1, note, &readiness);
  calls();
  c_loop_del_fd(7);
  EXPECT_EQ(calls(), Calls({"context.getLoop()", "loop.delFd(7)"}));
}

TEST_F(LoopTest, AdapterExistsUntilTheLoopHasRemovedIt) {
  c_loop_add_fd(7, 1, note, &readiness);
  log.on_call = [this](const std::string& call) {
    if (call == "loop.delFd(7)") loop.handlers[0]->handler(1, 7);
  };
  c_loop_del_fd(7);
  EXPECT_EQ(readiness.values, std::vector<int>({7}));
}

TEST_F(LoopTest, DescriptorIsForgottenBeforeTheLoopIsCalled) {
  Readiness newer;
  c_loop_add_fd(7, 1, note, &readiness);
  log.on_call = [&newer](const std::string& call) {
    if (call == "loop.delFd(7)") c_loop_add_fd(7, 2, note, &newer);
  };
  c_loop_del_fd(7);
  ASSERT_EQ(loop.handlers.size(), 2U);
  EXPECT_NE(loop.handlers[0], loop.handlers[1]);
  loop.handlers[1]->handler(1, 7);
  EXPECT_EQ(newer.values, std::vector<int>({7}));
}

TEST_F(LoopTest, DelOfAnUnknownDescriptorReachesTheLoop) {
  c_loop_add_fd(7, 1, note, &readiness);
  calls();
  c_loop_del_fd(8);
  EXPECT_EQ(calls(), Calls({"context.getLoop()", "loop.delFd(8)"}));
  loop.handlers[0]->handler(1, 7);
  EXPECT_EQ(readiness.values, std::vector<int>({7}));
}

TEST_F(LoopTest, SecondDelReachesTheLoop) {
  c_loop_add_fd(7, 1, note, &readiness);
  c_loop_del_fd(7);
  calls();
  c_loop_del_fd(7);
  EXPECT_EQ(calls(), Calls({"context.getLoop()", "loop.delFd(7)"}));
}

TEST_F(LoopTest, DelWithoutALoopForgetsTheWatch) {
  c_loop_add_fd(7, 1, note, &readiness);
  context.missing.insert("getLoop");
  calls();
  c_loop_del_fd(7);
  EXPECT_EQ(calls(), Calls({"context.getLoop()"}));

  // If the watch were still stored, adding would write to the deleted adapter.
  context.missing.clear();
  c_loop_add_fd(7, 1, note, &readiness);
  loop.handlers[1]->handler(1, 7);
  EXPECT_EQ(readiness.values, std::vector<int>({7}));
}

TEST_F(LoopTest, DelWithoutAContextForgetsTheWatch) {
  c_loop_add_fd(7, 1, note, &readiness);
  releaseContext(nullptr);
  proxy.instance = nullptr;
  calls();
  c_loop_del_fd(7);
  EXPECT_EQ(calls(), Calls({"getInstance(null)"}));
}

TEST_F(LoopTest, CallbackMayRemoveItsOwnWatch) {
  int stopped = 0;
  c_loop_add_fd(7, 1, stopWatching, &stopped);
  EXPECT_EQ(loop.handlers[0]->handler(1, 7), 0);
  EXPECT_EQ(stopped, 1);
}

}  // namespace
