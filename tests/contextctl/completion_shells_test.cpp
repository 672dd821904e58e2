// SPDX-License-Identifier: MIT
// The scripts, read by their shells.
#include <cstdlib>

#include "tests/contextctl/contextctl_test.h"

namespace contextctl {
namespace {

class CompletionShellsTest : public ContextctlTest {
 protected:
  void SetUp() override {
    context.answer("GET /tree?name=Device.",
                   R"({"leaves":[{"name":"Device.$(touch x).Mtu","type":"str","value":"","computed":false},)"
                   R"({"name":"Device.Host","type":"str","value":"","computed":false}]})");
    folder.write("a file.json", "");
  }

  // Runs a script in the test's folder, with `contextctl` on the search path.
  std::string output(const std::string& shell, const std::string& script) {
    const std::string path = std::getenv("PATH");
    const Outcome outcome = runProgram(
        context.base(), {shell, "-c", "cd " + folder.path() + "\n" + script},
        {"CPP2C_CONTROL=" + socket, "HOME=" + folder.path(), "PATH=" CPP2C_CONTEXTCTL_FOLDER ":" + path},
        nullptr);
    EXPECT_EQ(outcome.err, "");
    return outcome.out;
  }

  // What bash offers for the last word of a line, a line each.
  std::string inBash(const std::string& words) {
    return output("bash",
                  "source <(contextctl completion bash)\n"
                  "COMP_WORDS=(contextctl " +
                      words +
                      ")\n"
                      "COMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n"
                      "_contextctl\n"
                      "printf '%s\\n' \"${COMPREPLY[@]}\"\n");
  }

#ifdef CPP2C_ZSH
  // What zsh is given; its own functions are there only while a line is edited.
  std::string inZsh(const std::string& words) {
    return output(CPP2C_ZSH,
                  "compdef() { }\n"
                  "compadd() { shift; print -rl -- \"$@\"; }\n"
                  "_files() { print files; }\n"
                  "source <(contextctl completion zsh)\n"
                  "words=(contextctl " +
                      words +
                      ") CURRENT=$#words\n"
                      "_contextctl\n");
  }
#endif

#ifdef CPP2C_FISH
  std::string inFish(const std::string& line) {
    return output(CPP2C_FISH, "contextctl completion fish | source\ncomplete -C 'contextctl " + line + "'\n");
  }
#endif
};

TEST_F(CompletionShellsTest, BashCompletesCommands) {
  EXPECT_EQ(inBash("st"), "stop\nstats\n");
}

TEST_F(CompletionShellsTest, BashCompletesNamesAndExpandsNone) {
  EXPECT_EQ(inBash("get Device."), "Device.\\$\\(touch\\ x\\).Mtu\nDevice.Host\n");
}

TEST_F(CompletionShellsTest, BashCompletesFiles) {
  EXPECT_EQ(inBash("diff a"), "a file.json\n");
}

TEST_F(CompletionShellsTest, BashOffersNothingWhereThereIsNothing) {
  EXPECT_EQ(inBash("set Device.Host x"), "\n");
}

#ifdef CPP2C_ZSH
TEST_F(CompletionShellsTest, ZshCompletesCommands) {
  EXPECT_EQ(inZsh("st"), "stop\nstats\n");
}

TEST_F(CompletionShellsTest, ZshCompletesNamesAndExpandsNone) {
  EXPECT_EQ(inZsh("get Device."), "Device.$(touch x).Mtu\nDevice.Host\n");
}

TEST_F(CompletionShellsTest, ZshCompletesFiles) {
  EXPECT_EQ(inZsh("diff a"), "files\n");
}
#endif

#ifdef CPP2C_FISH
TEST_F(CompletionShellsTest, FishCompletesCommands) {
  EXPECT_EQ(inFish("st"), "stats\nstop\n");
}

TEST_F(CompletionShellsTest, FishCompletesNamesAndExpandsNone) {
  EXPECT_EQ(inFish("get Device."), "Device.$(touch x).Mtu\nDevice.Host\n");
}

TEST_F(CompletionShellsTest, FishCompletesFiles) {
  EXPECT_EQ(inFish("diff a"), "a file.json\n");
}
#endif

}  // namespace
}  // namespace contextctl
