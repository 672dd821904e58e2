// SPDX-License-Identifier: MIT
// The shells run the completion scripts.
#include <cstdlib>

#include "tests/contextctl/contextctl_test.h"

namespace contextctl {
namespace {

class ShellsTest : public ContextctlTest {
 protected:
  void SetUp() override {
    context.answer("GET /tree?name=Device.",
                   R"({"leaves":[{"name":"Device.$(touch x).Mtu","type":"str","value":"","computed":false},)"
                   R"({"name":"Device.Host","type":"str","value":"","computed":false}]})");
    folder.write("a file.json", "");
  }

  // Runs a script in the folder of the test, with `contextctl` on the search path.
  std::string output(const std::string& shell, const std::string& script) {
    const std::string path = std::getenv("PATH");
    const Outcome outcome = runProgram(
        context.base(), {shell, "-c", "cd " + folder.path() + "\n" + script},
        {"CPP2C_CONTROL=" + socket, "HOME=" + folder.path(), "PATH=" CPP2C_CONTEXTCTL_FOLDER ":" + path},
        nullptr);
    EXPECT_EQ(outcome.err, "");
    return outcome.out;
  }

  // The completions of the last word in bash, one per line.
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
  // The completions that zsh receives. Its own functions exist only while a line is edited, so this replaces
  // them.
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

TEST_F(ShellsTest, BashCompletesCommands) {
  EXPECT_EQ(inBash("st"), "stop\nstats\n");
}

TEST_F(ShellsTest, BashCompletesNamesWithoutExpansion) {
  EXPECT_EQ(inBash("get Device."), "Device.\\$\\(touch\\ x\\).Mtu\nDevice.Host\n");
}

TEST_F(ShellsTest, BashCompletesFiles) {
  EXPECT_EQ(inBash("diff a"), "a file.json\n");
}

TEST_F(ShellsTest, BashOffersNothingForAValue) {
  EXPECT_EQ(inBash("set Device.Host x"), "\n");
}

#ifdef CPP2C_ZSH
TEST_F(ShellsTest, ZshCompletesCommands) {
  EXPECT_EQ(inZsh("st"), "stop\nstats\n");
}

TEST_F(ShellsTest, ZshCompletesNamesWithoutExpansion) {
  EXPECT_EQ(inZsh("get Device."), "Device.$(touch x).Mtu\nDevice.Host\n");
}

TEST_F(ShellsTest, ZshCompletesFiles) {
  EXPECT_EQ(inZsh("diff a"), "files\n");
}
#endif

#ifdef CPP2C_FISH
TEST_F(ShellsTest, FishCompletesCommands) {
  EXPECT_EQ(inFish("st"), "stats\nstop\n");
}

TEST_F(ShellsTest, FishCompletesNamesWithoutExpansion) {
  EXPECT_EQ(inFish("get Device."), "Device.$(touch x).Mtu\nDevice.Host\n");
}

TEST_F(ShellsTest, FishCompletesFiles) {
  EXPECT_EQ(inFish("diff a"), "a file.json\n");
}
#endif

}  // namespace
}  // namespace contextctl
