// SPDX-License-Identifier: MIT
#include "host/host_context.h"

#include <errno.h>

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "binding/handlers.h"
#include "boot/boot_context.h"
#include "host/process/processes.h"
#include "include_c"
#include "tests/host/support/recording_log.h"
#include "tests/support/printed_text.h"
#include "tests/support/temporary_folder.h"

namespace host {
namespace {

int init(IContext& context, std::vector<const char*> arguments) {
  arguments.insert(arguments.begin(), "service");
  return context.init(arguments.size(), reinterpret_cast<std::uintptr_t>(arguments.data()));
}

class HostContextTest : public testing::Test {
 protected:
  HostContext context_;
};

class Timer final : public ITimer {
 public:
  int timeArrive(int) override { return 0; }
};

TEST_F(HostContextTest, BeforeInitThereAreNoServices) {
  EXPECT_EQ(context_.getLog(), nullptr);
  EXPECT_EQ(context_.getCfm(), nullptr);
  EXPECT_EQ(context_.getEvent(), nullptr);
  EXPECT_EQ(context_.getHeartbeat(), nullptr);
  EXPECT_EQ(context_.getLoop(), nullptr);
}

TEST_F(HostContextTest, BeforeInitOperationsAreRefused) {
  Timer timer;
  IBootContext observer;
  EXPECT_EQ(context_.load(), C_RESULT_NOT_INIT);
  EXPECT_EQ(context_.debugOut("f", 1, "x"), C_RESULT_NOT_INIT);
  EXPECT_EQ(context_.debugSwitch(1), C_RESULT_NOT_INIT);
  EXPECT_EQ(context_.systemCall("true"), C_RESULT_NOT_INIT);
  EXPECT_EQ(context_.systemCall2("true"), C_RESULT_NOT_INIT);
  EXPECT_EQ(context_.popenCall("true"), C_RESULT_NOT_INIT);
  EXPECT_EQ(context_.registMasterObserver(&observer), C_RESULT_NOT_INIT);
  EXPECT_EQ(context_.setTimer(0, 0, 0, &timer), C_RESULT_NOT_INIT);
  EXPECT_EQ(context_.notifyDepends("dns"), C_RESULT_NOT_INIT);
}

TEST_F(HostContextTest, InitWithoutArgumentsSucceeds) {
  EXPECT_EQ(context_.init(0, 0), C_RESULT_OK);
  EXPECT_NE(context_.getLog(), nullptr);
  EXPECT_NE(context_.getCfm(), nullptr);
  EXPECT_NE(context_.getEvent(), nullptr);
  EXPECT_NE(context_.getHeartbeat(), nullptr);
  EXPECT_NE(context_.getLoop(), nullptr);
}

TEST_F(HostContextTest, PositionsThatNobodyCallsAnswerZero) {
  IContext& context = context_;
  for (auto reserved :
       {&IContext::reserved5, &IContext::reserved11, &IContext::reserved12, &IContext::reserved18,
        &IContext::reserved21, &IContext::reserved22, &IContext::reserved23}) {
    EXPECT_EQ((context.*reserved)(), 0);
  }
  context.init(0, 0);
  EXPECT_EQ(context.getLoop()->reserved5(), 0);
}

TEST_F(HostContextTest, FailedInitSaysWhyInOneLineAndLeavesNothing) {
  PrintedText printed;
  EXPECT_EQ(init(context_, {"--colour"}), C_RESULT_PARAM);
  EXPECT_EQ(printed.standardError(),
            std::string(program_invocation_short_name) + ": unknown option \"--colour\"\n");
  EXPECT_EQ(printed.standardOutput(), "");
  EXPECT_EQ(context_.getLoop(), nullptr);
}

TEST_F(HostContextTest, MessageStaysOneLine) {
  PrintedText printed;
  EXPECT_EQ(init(context_, {"--config", "/no/such\nfile"}), C_RESULT_SYSTEM_CALL);
  EXPECT_EQ(printed.standardError(), "/no/such\\nfile: cannot be read: No such file or directory\n");
}

TEST_F(HostContextTest, AfterAFailedInitItMayBeTriedAgain) {
  PrintedText printed;
  init(context_, {"--colour"});
  EXPECT_EQ(init(context_, {}), C_RESULT_OK);
}

TEST_F(HostContextTest, SecondInitIsRefusedAndChangesNothing) {
  PrintedText printed;
  context_.init(0, 0);
  ILoop* loop = context_.getLoop();
  EXPECT_EQ(context_.init(0, 0), C_RESULT_REDUNDANT);
  EXPECT_EQ(printed.standardError(), "the context is already initialised\n");
  EXPECT_EQ(context_.getLoop(), loop);
}

TEST_F(HostContextTest, ConfigurationFillsTheTree) {
  const TemporaryFolder folder;
  const std::string file = folder.write(
      "c.json",
      R"({"objects": [{"number": 1, "name": "A.", "leaves": {"X": {"type": "int", "default": 5}}}]})");
  EXPECT_EQ(init(context_, {"--config", file.c_str()}), C_RESULT_OK);
  ICfmNode* node = context_.getCfm()->getNode("A.X");
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->getValue(), "5");
  context_.getCfm()->releaseNode(node);
}

TEST_F(HostContextTest, LogGoesToItsFileAtItsLevel) {
  const TemporaryFolder folder;
  const std::string file = folder.file("log");
  init(context_, {"--log-file", file.c_str(), "--log-level", "debug", "--debug"});
  context_.getLog()->record("m", 7, "detail");
  context_.debugOut("cpp2c", 5, "diagnostic");
  const std::string written = folder.read("log");
  EXPECT_NE(written.find(" debug m: detail\n"), std::string::npos) << written;
  EXPECT_NE(written.find(" debug cpp2c:5: diagnostic\n"), std::string::npos) << written;
}

TEST_F(HostContextTest, HeartbeatLimitComesFromTheConfiguration) {
  const TemporaryFolder folder;
  const std::string config = folder.write("c.json", R"({"heartbeat": {"limitMs": 1}})");
  const std::string log = folder.file("log");
  init(context_, {"--config", config.c_str(), "--log-file", log.c_str()});

  class Slow final : public ITimer {
   public:
    explicit Slow(IContext& context) : context_(context) {}
    int timeArrive(int) override {
      context_.systemCall("sleep 0.01; kill -TERM $PPID");
      return 0;
    }

   private:
    IContext& context_;
  } slow(context_);
  context_.setTimer(0, 0, 0, &slow);
  EXPECT_EQ(context_.getLoop()->run(), C_RESULT_OK);
  EXPECT_NE(folder.read("log").find(" of timer after 0 ms held the loop for "), std::string::npos);
}

std::vector<std::string> descriptorsOfACommand() {
  RecordingLog log;
  Processes(log).runLogged("ls /proc/self/fd");
  return log.records;
}

TEST_F(HostContextTest, CommandsInheritNoDescriptorOfTheContext) {
  const TemporaryFolder folder;
  const std::string log = folder.file("log");
  const std::string state = folder.file("state.db");
  const std::vector<std::string> before = descriptorsOfACommand();
  ASSERT_EQ(init(context_, {"--log-file", log.c_str(), "--state", state.c_str()}), C_RESULT_OK);
  Timer timer;
  context_.setTimer(60000, 0, 0, &timer);
  EXPECT_EQ(descriptorsOfACommand(), before);
}

}  // namespace

}  // namespace host
