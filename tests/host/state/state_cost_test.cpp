// SPDX-License-Identifier: MIT
// The rows and transactions of a save, as SQLite counts them.
#include <sqlite3.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "host/include/cpp2c_host.h"
#include "include_c"
#include "tests/host/state/opened_connection.h"
#include "tests/host/state/stateful_config.h"
#include "tests/host/support/memory_log.h"
#include "tests/host/support/objects.h"
#include "tests/support/temporary_folder.h"

namespace host {
namespace {

constexpr int kInstances = 1000;
constexpr int kLeaves = 100;

std::string instanceName(int i) {
  return "Row." + std::to_string(i) + '.';
}

std::string leafName(int i) {
  return "Leaf" + std::to_string(i);
}

std::vector<Object> hundredThousandLeaves() {
  std::vector<std::string> instances;
  for (int i = 0; i < kInstances; i++) instances.push_back(instanceName(i));
  Object object = objectOf(1, "Row.", numberedLeaves(kLeaves, "int", "0"), instances);
  object.dynamic = true;
  return objectsOf(std::move(object));
}

int countCommit(void* commits) {
  ++*static_cast<int*>(commits);
  return 0;
}

class StateCostTest : public testing::Test {
 protected:
  StateCostTest() { start(); }

  void start() {
    config_.reset();
    config_ = std::make_unique<StatefulConfig>(folder_.file("state.db"), hundredThousandLeaves(), log_);
    sqlite3_commit_hook(connection_.get(), countCommit, &commits_);
    countFromHere();
  }

  void countFromHere() {
    commits_ = 0;
    rows_before_ = sqlite3_total_changes(connection_.get());
  }

  int commits() const { return commits_; }
  int rows() const { return sqlite3_total_changes(connection_.get()) - rows_before_; }

  void setAll(const std::string& value) {
    for (int i = 0; i < kInstances; i++) {
      for (int j = 0; j < kLeaves; j++) config_->set(instanceName(i) + leafName(j), value);
    }
  }

  TemporaryFolder folder_;
  MemoryLog log_;
  OpenedConnection connection_;
  std::unique_ptr<StatefulConfig> config_;

 private:
  int commits_ = 0;
  int rows_before_ = 0;
};

TEST_F(StateCostTest, OneOfAHundredThousandLeavesIsSavedAsOneRow) {
  setAll("1");
  EXPECT_EQ(config_->save(), C_RESULT_OK);
  EXPECT_EQ(rows(), kInstances * kLeaves);
  EXPECT_EQ(commits(), 1);

  countFromHere();
  config_->set("Row.500.Leaf50", "2");
  EXPECT_EQ(config_->save(), C_RESULT_OK);
  EXPECT_EQ(rows(), 1);
  EXPECT_EQ(commits(), 1);

  start();
  EXPECT_EQ(config_->valueOf("Row.500.Leaf50"), "2");
  EXPECT_EQ(config_->valueOf("Row.999.Leaf99"), "1");
}

TEST_F(StateCostTest, SaveWithoutChangesHasNoTransaction) {
  EXPECT_EQ(config_->save(), C_RESULT_OK);
  config_->set("Row.1.Leaf1", "0");
  (*config_)->setAttr(1, 0);
  EXPECT_EQ(config_->save(), C_RESULT_OK);
  config_->set("Row.1.Leaf1", "1");
  config_->save();
  EXPECT_EQ(commits(), 1);
  EXPECT_EQ(config_->save(), C_RESULT_OK);
  EXPECT_EQ(commits(), 1);
}

TEST_F(StateCostTest, AddedAndDeletedInstanceHasNoTransaction) {
  (*config_)->setValue("Row.new.Leaf1", "5", C_CFM_CREATE);
  (*config_)->deleteInstance("Row.new.");
  EXPECT_EQ(config_->save(), C_RESULT_OK);
  EXPECT_EQ(commits(), 0);
}

TEST_F(StateCostTest, AddedInstanceIsOneRowAndOneForEachValue) {
  (*config_)->setValue("Row.new.Leaf1", "5", C_CFM_CREATE);
  config_->set("Row.new.Leaf2", "6");
  EXPECT_EQ(config_->save(), C_RESULT_OK);
  EXPECT_EQ(rows(), 3);
  EXPECT_EQ(commits(), 1);
}

TEST_F(StateCostTest, StartWritesNothing) {
  config_->set("Row.1.Leaf1", "1");
  config_->save();
  start();
  EXPECT_EQ(sqlite3_total_changes(connection_.get()), 0);
}

}  // namespace

}  // namespace host
