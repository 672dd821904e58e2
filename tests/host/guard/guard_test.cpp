// SPDX-License-Identifier: MIT
#include "host/guard/guard.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/guard/guarded_services.h"
#include "tests/support/recording_cfm.h"
#include "tests/support/recording_event.h"
#include "tests/support/recording_heartbeat.h"
#include "tests/support/recording_log.h"
#include "tests/support/recording_loop.h"

namespace host {
namespace {

// Records the operations that it checks, and refuses them if it has an answer.
class RecordingCheck final : public IOperationCheck {
 public:
  explicit RecordingCheck(CallLog& calls) : calls_(calls) {}

  std::optional<int> before(const OperationCall& call) override {
    calls_.record(std::string("before ") + nameOf(call.operation));
    return answer;
  }

  std::optional<int> answer;

 private:
  CallLog& calls_;
};

class GuardTest : public testing::Test {
 protected:
  CallLog calls_;
  Guard guard_;
  RecordingLog log_{calls_};
  RecordingCfm config_{calls_};
  RecordingEvent events_{calls_};
  RecordingHeartbeat heartbeat_{calls_};
  RecordingLoop loop_{calls_};
  GuardedLog guarded_log_{guard_, log_};
  GuardedCfm guarded_config_{guard_, config_};
  GuardedEvent guarded_events_{guard_, events_};
  GuardedHeartbeat guarded_heartbeat_{guard_, heartbeat_};
  GuardedLoop guarded_loop_{guard_, loop_};
  RecordingCheck check_{calls_};
};

// One operation: its name, the call that the service receives, and a function that calls it.
struct Row {
  const char* name;
  const char* call;
  std::function<int()> make;
};

class GuardedOperationsTest : public GuardTest {
 protected:
  int word_ = 0;
  const std::vector<Row> rows_ = {
      {"record", "log.record('m', 6, 't')", [this] { return guarded_log_.record("m", 6, "t"); }},
      {"getAttr", "cfm.getAttr(1, object)", [this] { return guarded_config_.getAttr(1, &word_); }},
      {"setAttr", "cfm.setAttr(1, 5)", [this] { return guarded_config_.setAttr(1, 5); }},
      {"registObserver", "cfm.registObserver(1, null)",
       [this] { return guarded_config_.registObserver(1, nullptr); }},
      {"unregistObserver", "cfm.unregistObserver(1, null)",
       [this] { return guarded_config_.unregistObserver(1, nullptr); }},
      {"registDataProvider", "cfm.registDataProvider(1, null)",
       [this] { return guarded_config_.registDataProvider(1, nullptr); }},
      {"setValue", "cfm.setValue('A.X', '5', 7)", [this] { return guarded_config_.setValue("A.X", "5", 7); }},
      {"save", "cfm.save(1)", [this] { return guarded_config_.save(1); }},
      {"registEventObserver", "event.registObserver('up', null)",
       [this] { return guarded_events_.registObserver("up", nullptr); }},
      {"unregistEventObserver", "event.unregistObserver('up', null)",
       [this] { return guarded_events_.unregistObserver("up", nullptr); }},
      {"notify", "event.notify('up', 'eth0', 0)", [this] { return guarded_events_.notify("up", "eth0", 0); }},
      {"lock", "heartbeat.lock()", [this] { return guarded_heartbeat_.lock(); }},
      {"unlock", "heartbeat.unlock()", [this] { return guarded_heartbeat_.unlock(); }},
      {"addFd", "loop.addFd(3, 2, null)", [this] { return guarded_loop_.addFd(3, 2, nullptr); }},
      {"delFd", "loop.delFd(3)", [this] { return guarded_loop_.delFd(3); }},
      {"run", "loop.run()", [this] { return guarded_loop_.run(); }},
  };
};

std::string operationOf(const std::string& call) {
  return call.substr(0, call.find('('));
}

TEST_F(GuardedOperationsTest, OperationIsCheckedAndForwarded) {
  guard_.add(check_);
  for (const Row& row : rows_) {
    calls_.results[operationOf(row.call)] = 17;
    EXPECT_EQ(row.make(), 17) << row.name;
    EXPECT_EQ(calls_.take(), (Calls{std::string("before ") + row.name + "()", row.call}));
  }
}

TEST_F(GuardedOperationsTest, RefusedOperationReturnsTheCodeOfTheCheck) {
  guard_.add(check_);
  check_.answer = -1018;
  for (const Row& row : rows_) {
    if (isRelease(findOperation(row.name).value())) continue;
    EXPECT_EQ(row.make(), -1018) << row.name;
    EXPECT_EQ(calls_.take(), Calls{std::string("before ") + row.name + "()"});
  }
}

// The caller deletes its observer in any case, so the service must not keep it.
TEST_F(GuardedOperationsTest, RefusedUnregistrationIsForwarded) {
  guard_.add(check_);
  check_.answer = -1018;
  std::vector<std::string> made;
  for (const Row& row : rows_) {
    if (!isRelease(findOperation(row.name).value())) continue;
    EXPECT_EQ(row.make(), -1018) << row.name;
    EXPECT_EQ(calls_.take(), (Calls{std::string("before ") + row.name + "()", row.call}));
    made.emplace_back(row.name);
  }
  EXPECT_EQ(made, (std::vector<std::string>{"unregistObserver", "unregistEventObserver", "delFd"}));
}

TEST_F(GuardTest, RefusedReleaseIsForwarded) {
  config_.leaves["A.X"] = {"int", "5", 1};
  config_.instances[1] = {"A.1."};
  ICfmNode* node = guarded_config_.getNode("A.X");
  ICfmIterator* iterator = guarded_config_.instanceIterator(1);
  guard_.add(check_);
  check_.answer = -1018;
  EXPECT_EQ(guarded_config_.releaseNode(node), -1018);
  EXPECT_EQ(guarded_config_.releaseIterator(iterator), -1018);
  EXPECT_TRUE(config_.nodes_on_loan.empty());
  EXPECT_TRUE(config_.iterators_on_loan.empty());
}

TEST_F(GuardTest, OperationWithoutChecksIsForwarded) {
  EXPECT_EQ(guarded_loop_.delFd(3), 0);
  EXPECT_EQ(calls_.take(), Calls{"loop.delFd(3)"});
}

TEST_F(GuardTest, NodeIsCheckedWhenLentAndReleased) {
  guard_.add(check_);
  config_.leaves["A.X"] = {"int", "5", 1};
  ICfmNode* node = guarded_config_.getNode("A.X");
  ASSERT_NE(node, nullptr);
  guarded_config_.releaseNode(node);
  EXPECT_EQ(calls_.take(), (Calls{"before getNode()", "cfm.getNode('A.X')", "before releaseNode()",
                                  "cfm.releaseNode('A.X')"}));
}

TEST_F(GuardTest, IteratorIsCheckedWhenLentAndReleased) {
  guard_.add(check_);
  config_.instances[1] = {"A.1."};
  ICfmIterator* iterator = guarded_config_.instanceIterator(1);
  ASSERT_NE(iterator, nullptr);
  guarded_config_.releaseIterator(iterator);
  EXPECT_EQ(calls_.take(), (Calls{"before instanceIterator()", "cfm.instanceIterator(1)",
                                  "before releaseIterator()", "cfm.releaseIterator(1)"}));
}

TEST_F(GuardTest, RefusedObjectIsNull) {
  guard_.add(check_);
  check_.answer = -1018;
  config_.leaves["A.X"] = {"int", "5", 1};
  config_.instances[1] = {"A.1."};
  EXPECT_EQ(guarded_config_.getNode("A.X"), nullptr);
  EXPECT_EQ(guarded_config_.instanceIterator(1), nullptr);
}

TEST_F(GuardTest, ChecksRunInOrderUntilOneRefuses) {
  RecordingCheck second(calls_);
  RecordingCheck third(calls_);
  second.answer = -1;
  third.answer = -2;
  for (RecordingCheck* check : {&check_, &second, &third}) guard_.add(*check);
  EXPECT_EQ(guarded_loop_.run(), -1);
  EXPECT_EQ(calls_.take(), (Calls{"before run()", "before run()"}));
}

TEST_F(GuardTest, ReservedOperationsAreNotChecked) {
  guard_.add(check_);
  for (auto reserved : {&ICfm::reserved4, &ICfm::reserved6, &ICfm::reserved11, &ICfm::reserved12,
                        &ICfm::reserved13, &ICfm::reserved16}) {
    EXPECT_EQ((guarded_config_.*reserved)(), 0);
  }
  for (auto reserved : {&IHeartbeat::reserved3, &IHeartbeat::reserved4, &IHeartbeat::reserved5,
                        &IHeartbeat::reserved6, &IHeartbeat::reserved7, &IHeartbeat::reserved8}) {
    EXPECT_EQ((guarded_heartbeat_.*reserved)(), 0);
  }
  EXPECT_EQ(guarded_loop_.reserved5(), 0);
  EXPECT_EQ(
      calls_.take(),
      (Calls{"cfm.reserved4()", "cfm.reserved6()", "cfm.reserved11()", "cfm.reserved12()", "cfm.reserved13()",
             "cfm.reserved16()", "heartbeat.reserved3()", "heartbeat.reserved4()", "heartbeat.reserved5()",
             "heartbeat.reserved6()", "heartbeat.reserved7()", "heartbeat.reserved8()", "loop.reserved5()"}));
}

TEST(OperationTest, OperationIsFoundByItsName) {
  for (int i = 0; i <= static_cast<int>(Operation::kRun); i++) {
    const auto operation = static_cast<Operation>(i);
    EXPECT_EQ(findOperation(nameOf(operation)), operation) << nameOf(operation);
  }
  EXPECT_EQ(findOperation("init"), std::nullopt);
  EXPECT_EQ(findOperation(""), std::nullopt);
}

TEST(OperationTest, OnlyGettersReturnObjects) {
  std::vector<std::string> objects;
  for (int i = 0; i <= static_cast<int>(Operation::kRun); i++) {
    const auto operation = static_cast<Operation>(i);
    if (returnsObject(operation)) objects.emplace_back(nameOf(operation));
  }
  EXPECT_EQ(objects, (std::vector<std::string>{"getLog", "getCfm", "getEvent", "getHeartbeat", "getLoop",
                                               "getNode", "instanceIterator"}));
}

}  // namespace

}  // namespace host
