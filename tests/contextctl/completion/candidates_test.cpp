// SPDX-License-Identifier: MIT
#include "tests/contextctl/contextctl_test.h"

namespace contextctl {
namespace {

class CandidatesTest : public ContextctlTest {
 protected:
  // The completions of the last word, one per line.
  std::string candidates(std::vector<std::string> words) {
    words.insert(words.begin(), {"complete", "--"});
    const Outcome outcome = run(words);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
    return outcome.out;
  }

  void expectFiles(std::vector<std::string> words) {
    words.insert(words.begin(), {"complete", "--"});
    expectOutcome(run(words), 1, "", "");
  }

  void knowLeaves(const std::string& prefix) {
    context.answer("GET /tree?name=" + prefix,
                   R"({"leaves":[)"
                   R"({"name":"Device.Host","type":"str","value":"a","computed":false},)"
                   R"({"name":"Device.If.eth0.Mtu","type":"uint","value":"1","computed":false},)"
                   R"({"name":"Device.If.eth0.Up","type":"bool","value":"1","computed":false}]})");
  }
};

TEST_F(CandidatesTest, CommandsAreCompleted) {
  EXPECT_EQ(candidates({"st"}), "stop\nstats\n");
}

TEST_F(CandidatesTest, CommandsAfterOptionsAreCompleted) {
  EXPECT_EQ(candidates({"--json", "--control", "x.sock", "mod"}), "modules\n");
}

TEST_F(CandidatesTest, CommandsOfAGroupAreCompleted) {
  EXPECT_EQ(candidates({"follow", ""}), "changes\nevents\nlog\n");
}

TEST_F(CandidatesTest, AliasesAreCompleted) {
  EXPECT_EQ(candidates({"wa"}), "watch\n");
  EXPECT_EQ(candidates({"event", "f"}), "follow\n");
}

TEST_F(CandidatesTest, NamesAreCompletedAfterFollow) {
  knowLeaves("Device.H");
  EXPECT_EQ(candidates({"follow", "changes", "Device.H"}), "Device.Host\n");
}

TEST_F(CandidatesTest, NamesAreCompletedAfterAnAlias) {
  knowLeaves("Device.H");
  EXPECT_EQ(candidates({"watch", "Device.H"}), "Device.Host\n");
}

TEST_F(CandidatesTest, OptionsIncludeTheCommonOnes) {
  EXPECT_EQ(candidates({"set", "--c"}), "--control\n--create\n");
  EXPECT_EQ(candidates({"follow", "events", "--co"}), "--control\n--count\n");
}

TEST_F(CandidatesTest, OptionsAreNotCompletedAfterTwoDashes) {
  EXPECT_EQ(candidates({"set", "A", "--", "-"}), "");
}

TEST_F(CandidatesTest, ChoicesAreCompleted) {
  EXPECT_EQ(candidates({"inspect", "--kind", "m"}), "module\n");
  EXPECT_EQ(candidates({"completion", ""}), "bash\nzsh\nfish\n");
}

TEST_F(CandidatesTest, FileNamesAreLeftToTheShell) {
  expectFiles({"diff", "a"});
  expectFiles({"stats", "--trace", ""});
  expectFiles({"export", "", "a"});
  expectFiles({"--control", ""});
}

TEST_F(CandidatesTest, LeavesAreCompleted) {
  knowLeaves("Device.I");
  EXPECT_EQ(candidates({"get", "Device.Host", "Device.I"}), "Device.If.eth0.Mtu\nDevice.If.eth0.Up\n");
}

TEST_F(CandidatesTest, NamesWithControlCharactersAreNotOffered) {
  context.answer("GET /objects", R"({"objects":[{"name":"A\u001b"},{"name":"B\u009b"},{"name":"C"}]})");
  EXPECT_EQ(candidates({"attribute", ""}), "C\n");
}

TEST_F(CandidatesTest, InstancesAreCompleted) {
  knowLeaves("Device.I");
  EXPECT_EQ(candidates({"del", "Device.I"}), "Device.If.eth0.\n");
}

TEST_F(CandidatesTest, ObjectsAreCompleted) {
  context.answer("GET /objects", R"({"objects":[{"number":1,"name":"Device."},{"number":2,"name":"X."}]})");
  EXPECT_EQ(candidates({"attribute", "D"}), "Device.\n");
}

TEST_F(CandidatesTest, TheNamedContextIsAsked) {
  knowLeaves("Device.H");
  const Outcome outcome =
      runIn({"CPP2C_CONTROL=/nowhere.sock"}, {"complete", "--", "--control", socket, "set", "Device.H"});
  expectOutcome(outcome, 0, "Device.Host\n", "");
}

TEST_F(CandidatesTest, ValuesAreNotCompleted) {
  EXPECT_EQ(candidates({"set", "Device.Host", "De"}), "");
}

TEST_F(CandidatesTest, NoContextCompletesNothing) {
  EXPECT_EQ(candidates({"--control", "/nowhere.sock", "get", "De"}), "");
}

TEST_F(CandidatesTest, AnInvalidAnswerCompletesNothing) {
  context.answer("GET /tree", "nonsense");
  EXPECT_EQ(candidates({"get", ""}), "");
}

}  // namespace
}  // namespace contextctl
