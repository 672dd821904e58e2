// SPDX-License-Identifier: MIT
// A limit for the size of files (RLIMIT_FSIZE), beyond which the kernel sends SIGXFSZ.
#include <signal.h>
#include <sys/resource.h>

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "host/process/processes.h"
#include "tests/host/state/stateful_config.h"
#include "tests/host/support/child_process.h"
#include "tests/host/support/error_text.h"
#include "tests/host/support/memory_log.h"
#include "tests/support/temporary_folder.h"

namespace host {
namespace {

const char kConfig[] = R"({"objects": [{"number": 1, "name": "A.", "leaves": {"X": {"type": "str"}}}]})";

void limitFileSize(rlim_t size) {
  const rlimit limits = {size, RLIM_INFINITY};
  setrlimit(RLIMIT_FSIZE, &limits);
}

sighandler_t handlerOfTheSignal() {
  struct sigaction action {};
  sigaction(SIGXFSZ, nullptr, &action);
  return action.sa_handler;
}

class FileSizeLimitTest : public testing::Test {
 protected:
  StatefulConfig start() { return {file_, kConfig, log_}; }

  TemporaryFolder folder_;
  const std::string file_ = folder_.file("state.db");
  MemoryLog log_;
};

TEST_F(FileSizeLimitTest, SaveBeyondTheLimitIsRefusedInOneLine) {
  EXPECT_EQ(inChild([&] {
              StatefulConfig config = start();
              config.set("A.X", std::string(100000, 'n'));
              limitFileSize(32768);
              std::string results = std::to_string(config.save());
              limitFileSize(RLIM_INFINITY);
              for (const std::string& record : log_.records) results += '\n' + record;
              return results + '\n' + std::to_string(config.save());
            }),
            "-1021\n3 state: " + file_ + ": would exceed the limit for file sizes (RLIMIT_FSIZE)\n0");
  EXPECT_EQ(start().valueOf("A.X"), std::string(100000, 'n'));
}

TEST_F(FileSizeLimitTest, LostFileThatCannotBeWrittenAgainIsRefusedInOneLine) {
  EXPECT_EQ(inChild([&] {
              StatefulConfig config = start();
              config.set("A.X", std::string(100000, 'n'));
              config.save();
              std::filesystem::remove(file_);
              limitFileSize(32768);
              std::string results = std::to_string(config.save());
              limitFileSize(RLIM_INFINITY);
              for (const std::string& record : log_.records) results += '\n' + record;
              return results + '\n' + std::to_string(config.save());
            }),
            "-1021\n3 state: " + file_ + ": would exceed the limit for file sizes (RLIMIT_FSIZE)\n0");
  EXPECT_EQ(start().valueOf("A.X"), std::string(100000, 'n'));
}

TEST_F(FileSizeLimitTest, StartBeyondTheLimitIsRefused) {
  EXPECT_EQ(inChild([&] {
              limitFileSize(8192);
              return errorOf([&] { start(); });
            }),
            "-1021 " + file_ + ": cannot be read or written");
}

TEST_F(FileSizeLimitTest, SignalEndsTheProgramAgainAfterwards) {
  {
    const StatefulConfig config = start();
    EXPECT_NE(handlerOfTheSignal(), SIG_DFL);
    EXPECT_NE(errorOf([&] { start(); }), "");
    EXPECT_NE(handlerOfTheSignal(), SIG_DFL);
  }
  EXPECT_EQ(handlerOfTheSignal(), SIG_DFL);
}

TEST_F(FileSizeLimitTest, SignalEndsTheCommandsThatAreRun) {
  const StatefulConfig config = start();
  EXPECT_EQ(Processes(log_).run("kill -XFSZ $$"), 128 + SIGXFSZ);
}

TEST_F(FileSizeLimitTest, HandlerOfTheProgramStays) {
  signal(SIGXFSZ, SIG_IGN);
  {
    const StatefulConfig config = start();
    EXPECT_EQ(handlerOfTheSignal(), SIG_IGN);
  }
  EXPECT_EQ(handlerOfTheSignal(), SIG_IGN);
  signal(SIGXFSZ, SIG_DFL);
}

}  // namespace

}  // namespace host
