// SPDX-License-Identifier: MIT
// The output of commands in the log, whatever its size.
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "binding/context.h"
#include "host/process/processes.h"
#include "tests/host/support/memory_log.h"

namespace host {
namespace {

// Keeps only the sizes of the records.
class MeasuringLog final : public ILog {
 public:
  int record(std::string, int, const char* text) override {
    const std::string record = text;
    total_ += record.size();
    longest_ = std::max(longest_, record.size());
    return 0;
  }

  std::size_t total() const { return total_; }
  std::size_t longest() const { return longest_; }

 private:
  std::size_t total_ = 0;
  std::size_t longest_ = 0;
};

TEST(CommandOutputTest, LongLineContinuesInFurtherRecords) {
  MemoryLog log;
  Processes(log).runLogged("printf '%09000d\\nnext\\n' 0");
  EXPECT_EQ(log.records, (std::vector<std::string>{
                             "6 command: " + std::string(4096, '0'), "6 command: " + std::string(4096, '0'),
                             "6 command: " + std::string(808, '0') + '\n', "6 command: next\n"}));
}

TEST(CommandOutputTest, LineOfTheGreatestLengthIsOneRecord) {
  MemoryLog log;
  Processes(log).runLogged("printf '%04096d\\n' 0; printf '%04096d' 0");
  EXPECT_EQ(log.records, (std::vector<std::string>{"6 command: " + std::string(4096, '0') + '\n',
                                                   "6 command: " + std::string(4096, '0')}));
}

TEST(CommandOutputTest, HugeLineIsLoggedInPartsWithoutLoss) {
  constexpr std::size_t kHuge = 20'000'000;
  MeasuringLog log;
  EXPECT_EQ(Processes(log).runLogged("head -c 20000000 /dev/zero | tr '\\0' x"), 0);
  EXPECT_EQ(log.total(), kHuge);
  EXPECT_EQ(log.longest(), 4096U);
}

// Takes long enough for each record that the command has ended when the next part is read.
class SlowLog final : public ILog {
 public:
  int record(std::string, int, const char* text) override {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    records.emplace_back(text);
    return 0;
  }

  std::vector<std::string> records;
};

TEST(CommandOutputTest, LastByteIsReadAfterTheEndOfTheCommand) {
  SlowLog log;
  Processes(log).runLogged("printf '%04095d\\nx' 0");
  EXPECT_EQ(log.records, (std::vector<std::string>{std::string(4095, '0') + '\n', "x"}));
}

TEST(CommandOutputTest, OutputInPiecesIsOneLine) {
  MemoryLog log;
  Processes(log).runLogged("printf on; sleep 0.05; echo e");
  EXPECT_EQ(log.records, std::vector<std::string>{"6 command: one\n"});
}

}  // namespace

}  // namespace host
