// SPDX-License-Identifier: MIT
#include "tests/contextctl/contextctl_test.h"

namespace {

class CompletionTest : public ContextctlTest {
 protected:
  // What bash offers for the last word of a line, a line each.
  std::string completed(const std::string& arguments) {
    const std::string script = "source " CPP2C_SOURCE_DIR
                               "/packaging/contextctl.bash\n"
                               "COMP_WORDS=(" CPP2C_CONTEXTCTL " " +
                               arguments +
                               ")\n"
                               "COMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n"
                               "_contextctl\n"
                               "printf '%s\\n' \"${COMPREPLY[@]}\"\n";
    const Outcome outcome =
        runProgram(context.base(), {"bash", "-c", script}, {"CPP2C_CONTROL=" + socket}, nullptr);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
    return outcome.out;
  }

  void knowLeaves(const std::string& prefix) {
    context.answer("GET /tree?name=" + prefix,
                   R"({"leaves":[{"name":"Device.Host"},{"name":"Device.$(touch x).Mtu"}]})");
  }
};

TEST_F(CompletionTest, CommandsAreCompleted) {
  EXPECT_EQ(completed("st"), "stop\nstats\n");
}

TEST_F(CompletionTest, CommandsBehindOptionsAreCompleted) {
  EXPECT_EQ(completed("--json --control x.sock mod"), "modules\n");
}

TEST_F(CompletionTest, CommandsOfEventAreCompleted) {
  EXPECT_EQ(completed("event ''"), "send\nfollow\n");
}

TEST_F(CompletionTest, OptionsOfACommandAreCompleted) {
  EXPECT_EQ(completed("set --c"), "--create\n--control\n");
  EXPECT_EQ(completed("event follow --co"), "--count\n--control\n");
}

TEST_F(CompletionTest, KindsAreCompleted) {
  EXPECT_EQ(completed("inspect --kind m"), "module\n");
}

TEST_F(CompletionTest, LeavesAreCompletedAndNeverExpanded) {
  knowLeaves("Device.");
  EXPECT_EQ(completed("get Device."), "Device.Host\nDevice.\\$\\(touch\\ x\\).Mtu\n");
}

TEST_F(CompletionTest, TheNamedContextIsAskedForLeaves) {
  knowLeaves("Device.H");
  EXPECT_EQ(completed("--control " + socket + " set Device.H"), "Device.Host\n");
}

TEST_F(CompletionTest, ValuesAreNotCompleted) {
  EXPECT_EQ(completed("set Device.Host De"), "\n");
}

TEST_F(CompletionTest, NoContextCompletesNothing) {
  EXPECT_EQ(completed("--control /nowhere.sock get De"), "\n");
}

}  // namespace
