// SPDX-License-Identifier: MIT
// A process that is killed at any instant has saved either all of a change or nothing.
#include <unistd.h>

#include <random>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "host/include/cpp2c_host.h"
#include "include_c"
#include "tests/host/state/stateful_config.h"
#include "tests/host/support/child_process.h"
#include "tests/host/support/memory_log.h"
#include "tests/host/support/objects.h"
#include "tests/support/temporary_folder.h"

namespace host {
namespace {

constexpr int kPlain = 1;
constexpr int kRun = 2;
constexpr int kLeaves = 60;
constexpr int kKills = 220;

std::vector<Object> objects() {
  Object run = objectOf(kRun, "Run.", {{"Generation", findValueType("int"), "0"}}, {"Run.0."});
  run.dynamic = true;
  return objectsOf(objectOf(kPlain, "Plain.", numberedLeaves(kLeaves, "str", "0"), {"Plain."}),
                   std::move(run));
}

// Leaves, an attribute and the one instance of an object, all with the number of the same generation.
class Generations {
 public:
  explicit Generations(const std::string& file) : config_(file, objects(), log_) {}

  int current() { return config_.attributeOf(kPlain); }

  // Sets everything to the next generation and saves it.
  int next() {
    const std::string old_instance = "Run." + std::to_string(current()) + '.';
    const std::string generation = std::to_string(current() + 1);
    config_->setAttr(kPlain, current() + 1);
    for (int i = 0; i < kLeaves; i++) config_.set("Plain.Leaf" + std::to_string(i), generation);
    config_->deleteInstance(old_instance);
    config_->setValue("Run." + generation + ".Generation", generation, C_CFM_CREATE);
    return config_.save();
  }

  void expectOneGeneration() {
    const std::string generation = std::to_string(current());
    for (int i = 0; i < kLeaves; i++) {
      ASSERT_EQ(config_.valueOf("Plain.Leaf" + std::to_string(i)), generation) << "leaf " << i;
    }
    EXPECT_EQ(config_.instancesOf(kRun), "Run." + generation + ". ");
    EXPECT_EQ(config_.valueOf("Run." + generation + ".Generation"), generation);
    EXPECT_TRUE(log_.records.empty());
  }

 private:
  MemoryLog log_;
  StatefulConfig config_;
};

// Saves forever, and reports each generation once it has been saved.
void saveOnAndOn(const std::string& file, int output) {
  Generations generations(file);
  while (generations.next() == C_RESULT_OK) {
    const int generation = generations.current();
    if (write(output, &generation, sizeof generation) != sizeof generation) return;
  }
}

// Reads the next report. Returns false and leaves `generation` alone if there is none.
bool readReport(int input, int& generation) {
  int report = 0;
  if (read(input, &report, sizeof report) != sizeof report) return false;
  generation = report;
  return true;
}

class StateKillTest : public testing::Test {
 protected:
  void waitUpTo(int microseconds) {
    std::this_thread::sleep_for(
        std::chrono::microseconds(std::uniform_int_distribution<int>(0, microseconds)(random_)));
  }

  TemporaryFolder folder_;
  const std::string file_ = folder_.file("state.db");

 private:
  const std::random_device::result_type seed_ = std::random_device()();
  const testing::ScopedTrace trace_{__FILE__, __LINE__, "seed: " + std::to_string(seed_)};
  std::mt19937 random_{seed_};
};

TEST_F(StateKillTest, KilledProcessLeavesTheOldOrTheNewState) {
  int reported = 0;
  for (int i = 0; i < kKills; i++) {
    {
      ChildProcess child([&](int output) { saveOnAndOn(file_, output); });
      // Every second child is killed after its first save, the others possibly while they start.
      if (i % 2 == 0) {
        ASSERT_TRUE(readReport(child.input(), reported)) << "kill " << i;
      }
      waitUpTo(5000);
      child.kill();
      while (readReport(child.input(), reported)) continue;
    }
    Generations restarted(file_);
    restarted.expectOneGeneration();
    ASSERT_FALSE(HasFailure()) << "kill " << i;
    ASSERT_GE(restarted.current(), reported) << "kill " << i;
    ASSERT_LE(restarted.current(), reported + 1) << "kill " << i;
    reported = restarted.current();
  }
  EXPECT_GE(reported, kKills / 2);
}

TEST_F(StateKillTest, ProcessKilledAtItsFirstStartCanBeRestarted) {
  for (int i = 0; i < 30; i++) {
    const std::string file = folder_.file("state" + std::to_string(i));
    {
      ChildProcess child([&](int output) { saveOnAndOn(file, output); });
      waitUpTo(3000);
    }
    Generations(file).expectOneGeneration();
    ASSERT_FALSE(HasFailure()) << "kill " << i;
  }
}

}  // namespace

}  // namespace host
