// SPDX-License-Identifier: MIT
// Two processes that open the same state file at the same instant.
#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/state/stateful_config.h"
#include "tests/host/support/child_process.h"
#include "tests/host/support/error_text.h"
#include "tests/host/support/memory_log.h"
#include "tests/support/temporary_folder.h"

namespace host {
namespace {

constexpr int kRounds = 100;
const char kConfig[] = R"({"objects": [{"number": 1, "name": "A.", "leaves": {"X": {"type": "str"}}}]})";

// Processes wait at the gate until it opens.
class Gate {
 public:
  Gate() {
    if (pipe(ends_) != 0) ADD_FAILURE() << "no pipe";
  }
  ~Gate() { close(ends_[0]); }
  Gate(const Gate&) = delete;
  Gate& operator=(const Gate&) = delete;

  void open() { close(ends_[1]); }
  void wait() {
    open();
    char nothing = 0;
    while (read(ends_[0], &nothing, 1) > 0) continue;
  }

 private:
  int ends_[2] = {-1, -1};
};

class StartRaceTest : public testing::Test {
 protected:
  // Starts two processes with that file and returns their error messages; the one that has started keeps
  // running.
  static std::vector<std::string> race(const std::string& file) {
    Gate gate;
    const auto start = [&](int output) {
      gate.wait();
      MemoryLog log;
      std::unique_ptr<StatefulConfig> config;
      const std::string line =
          errorOf([&] { config = std::make_unique<StatefulConfig>(file, kConfig, log); }) + '\n';
      if (write(output, line.data(), line.size()) > 0) pause();
    };
    const ChildProcess first(start);
    const ChildProcess second(start);
    gate.open();
    std::vector<std::string> errors = {first.line(), second.line()};
    std::sort(errors.begin(), errors.end());
    return errors;
  }

  static std::vector<std::string> oneInUse(const std::string& file) {
    return {"", "-1021 " + file + ": is in use by another process"};
  }

  TemporaryFolder folder_;
};

TEST_F(StartRaceTest, OneOfTwoProcessesGetsANewFile) {
  for (int round = 0; round < kRounds; round++) {
    const std::string file = folder_.file("state" + std::to_string(round));
    ASSERT_EQ(race(file), oneInUse(file)) << "round " << round;
  }
}

TEST_F(StartRaceTest, OneOfTwoProcessesGetsAnExistingFile) {
  const std::string file = folder_.file("state.db");
  for (int round = 0; round < kRounds; round++) ASSERT_EQ(race(file), oneInUse(file)) << "round " << round;
}

}  // namespace

}  // namespace host
