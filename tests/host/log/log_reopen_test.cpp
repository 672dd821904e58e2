// SPDX-License-Identifier: MIT
// SIGHUP makes the context reopen the log file, if an option says so.
#include <errno.h>
#include <signal.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "binding/handlers.h"
#include "host/host_context.h"
#include "host/include/cpp2c_host.h"
#include "include_c"
#include "tests/support/printed_text.h"
#include "tests/support/temporary_folder.h"

namespace host {
namespace {

class StopTimer final : public ITimer {
 public:
  int timeArrive(int) override { return raise(SIGTERM); }
};

class LogReopenTest : public testing::Test {
 protected:
  int init(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "service");
    context_.emplace();
    return context_->init(arguments.size(), reinterpret_cast<std::uintptr_t>(arguments.data()));
  }

  void runLoopOnce() {
    StopTimer timer;
    context_->setTimer(0, 0, 0, &timer);
    context_->getLoop()->run();
  }

  static bool isCaught() {
    struct sigaction action {};
    sigaction(SIGHUP, nullptr, &action);
    return action.sa_handler != SIG_DFL;
  }

  TemporaryFolder folder_;
  const std::string log_ = folder_.file("log");
  std::optional<HostContext> context_;
};

TEST_F(LogReopenTest, HangupReopensTheFile) {
  ASSERT_EQ(init({"--log-file", log_.c_str(), "--log-reopen"}), C_RESULT_OK);
  std::filesystem::rename(log_, folder_.file("old"));
  raise(SIGHUP);
  runLoopOnce();
  context_->getLog()->record("m", C_LOG_INFO, "after");
  EXPECT_EQ(folder_.read("old"), "");
  EXPECT_NE(folder_.read("log").find(" info m: after\n"), std::string::npos);
}

TEST_F(LogReopenTest, HangupIsCaughtOnlyWhileTheContextExists) {
  ASSERT_EQ(init({"--log-file", log_.c_str(), "--log-reopen"}), C_RESULT_OK);
  EXPECT_TRUE(isCaught());
  context_.reset();
  EXPECT_FALSE(isCaught());
}

TEST_F(LogReopenTest, HangupIsNotCaughtWithoutTheOption) {
  ASSERT_EQ(init({"--log-file", log_.c_str()}), C_RESULT_OK);
  EXPECT_FALSE(isCaught());
}

TEST_F(LogReopenTest, OptionNeedsAFile) {
  PrintedText printed;
  EXPECT_EQ(init({"--log-reopen"}), C_RESULT_PARAM);
  EXPECT_EQ(printed.standardError(), std::string(program_invocation_short_name) +
                                         ": the option \"--log-reopen\" needs the option \"--log-file\"\n");
}

}  // namespace

}  // namespace host
