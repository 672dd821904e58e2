// SPDX-License-Identifier: MIT
#include <algorithm>
#include <iterator>
#include <set>
#include <sstream>

#include "tests/contextctl/contextctl_test.h"
#include "tests/support/valgrind.h"

namespace contextctl {
namespace {

class UsageTest : public ContextctlTest {
 protected:
  using Names = std::set<std::string>;

  // The first word of each indented line below a heading of the help.
  Names listed(const std::string& heading, std::vector<std::string> arguments) {
    arguments.emplace_back("--help");
    std::istringstream help(run(arguments).out);
    Names names;
    bool in_list = false;
    for (std::string line, name; std::getline(help, line);) {
      const bool is_item = line.compare(0, 2, "  ") == 0 && line[2] != ' ';
      if (in_list && is_item && std::istringstream(line) >> name) names.insert(name);
      in_list = line == heading || (in_list && !line.empty());
    }
    return names;
  }

  Names commandsOf(const std::vector<std::string>& arguments) { return listed("Subcommands:", arguments); }
  Names aliasesOf(const std::vector<std::string>& arguments) { return listed("Aliases:", arguments); }

  // The words of every command, as in {"event", "send"}.
  std::vector<std::vector<std::string>> allCommands() {
    std::vector<std::vector<std::string>> all;
    for (const std::string& command : commandsOf({})) {
      const Names below = commandsOf({command});
      if (below.empty()) all.push_back({command});
      for (const std::string& name : below) all.push_back({command, name});
      for (const std::string& alias : aliasesOf({command})) all.push_back({command, alias});
    }
    for (const std::string& alias : aliasesOf({})) all.push_back({alias});
    return all;
  }

  // Without the backslashes before dashes.
  static std::string readManual() {
    std::ifstream stream(CPP2C_SOURCE_DIR "/packaging/contextctl.1");
    std::string text{std::istreambuf_iterator<char>(stream), {}};
    text.erase(std::remove(text.begin(), text.end(), '\\'), text.end());
    return text;
  }

  static std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
    return text;
  }
};

TEST_F(UsageTest, HelpListsEveryCommand) {
  EXPECT_EQ(commandsOf({}),
            (Names{"add",           "attribute", "completion", "del",     "diff",      "event", "export",
                   "follow",        "get",       "import",     "inspect", "instances", "list",  "modules",
                   "registrations", "save",      "set",        "stats",   "stop",      "top",   "tree"}));
}

TEST_F(UsageTest, HelpListsEveryCommandOfAGroup) {
  EXPECT_EQ(commandsOf({"follow"}), (Names{"changes", "events", "log"}));
  EXPECT_EQ(commandsOf({"event"}), Names{"send"});
}

TEST_F(UsageTest, HelpListsEveryAlias) {
  EXPECT_EQ(aliasesOf({}), (Names{"log", "watch"}));
  EXPECT_EQ(aliasesOf({"event"}), Names{"follow"});
}

TEST_F(UsageTest, EveryCommandHasExamples) {
  for (const std::vector<std::string>& command : allCommands()) {
    std::vector<std::string> words = command;
    words.emplace_back("--help");
    const std::string help = run(words).out;
    const size_t examples = help.find("Examples:\n");
    ASSERT_NE(examples, std::string::npos) << joined(command);
    EXPECT_NE(help.find("contextctl " + joined(command), examples), std::string::npos) << joined(command);
  }
}

TEST_F(UsageTest, EveryCommandIsInTheManual) {
  const std::string manual = readManual();
  for (const std::vector<std::string>& command : allCommands())
    EXPECT_NE(manual.find("\n.B " + joined(command)), std::string::npos) << joined(command);
}

TEST_F(UsageTest, EveryOptionIsInTheManual) {
  if (underValgrind()) GTEST_SKIP() << "the program is started for every command, which takes minutes";
  const std::string manual = readManual();
  std::vector<std::vector<std::string>> places = allCommands();
  places.push_back({});
  for (const std::vector<std::string>& place : places)
    for (std::string option : listed("Options:", place)) {
      option = option.substr(option.find("--"));
      EXPECT_NE(manual.find(option), std::string::npos) << joined(place) << ' ' << option;
    }
}

TEST_F(UsageTest, EveryExitStatusIsInTheManual) {
  const std::string manual = readManual();
  for (const char* status : {"0", "1", "2", "3"})
    EXPECT_NE(manual.find(std::string("\n.TP\n.B ") + status + '\n'), std::string::npos) << status;
}

TEST_F(UsageTest, VersionIsPrinted) {
  expectOutput({"--version"}, "contextctl " CPP2C_VERSION "\n");
}

TEST_F(UsageTest, NoCommandIsWrongUsage) {
  expectFailure({}, 2, "no command; try --help");
}

TEST_F(UsageTest, AGroupWithoutACommandIsWrongUsage) {
  expectFailure({"follow"}, 2, "no command after \"follow\"; try --help");
}

TEST_F(UsageTest, AnUnknownCommandIsWrongUsage) {
  expectFailure({"frob"}, 2, "unknown command \"frob\"; try --help");
  expectFailure({"frob", "Device.Host"}, 2, "unknown command \"frob\"; try --help");
}

TEST_F(UsageTest, AnUnknownCommandOfAGroupIsWrongUsage) {
  expectFailure({"follow", "frob"}, 2, "unknown command \"frob\" after \"follow\"; try --help");
}

TEST_F(UsageTest, AnUnknownOptionIsWrongUsage) {
  expectFailure({"top", "--frob"}, 2, "unknown option \"--frob\"; try --help");
}

TEST_F(UsageTest, ASimilarCommandIsSuggested) {
  expectFailure({"gett", "Device.Host"}, 2, "unknown command \"gett\"; did you mean \"get\"?");
  expectFailure({"event", "sent", "x"}, 2,
                "unknown command \"sent\" after \"event\"; did you mean \"send\"?");
}

TEST_F(UsageTest, AnInternalCommandIsNotSuggested) {
  expectFailure({"complet"}, 2, "unknown command \"complet\"; try --help");
}

TEST_F(UsageTest, ASimilarOptionIsSuggested) {
  expectFailure({"top", "--intervall=1"}, 2, "unknown option \"--intervall\"; did you mean \"--interval\"?");
  expectFailure({"top", "--jsn"}, 2, "unknown option \"--jsn\"; did you mean \"--json\"?");
  expectFailure({"--jsn", "save"}, 2, "unknown option \"--jsn\"; did you mean \"--json\"?");
}

TEST_F(UsageTest, AnArgumentTooManyIsWrongUsage) {
  expectFailure({"save", "x"}, 2, "unexpected argument \"x\"; try --help");
}

TEST_F(UsageTest, AMissingArgumentIsWrongUsage) {
  expectFailure({"get"}, 2, "LEAF is required");
}

TEST_F(UsageTest, AnUnknownShellIsWrongUsage) {
  expectFailure({"completion", "csh"}, 2, "SHELL: \"csh\" is unknown; known: bash, zsh, fish");
}

TEST_F(UsageTest, ATimeoutThatIsNotANumberIsWrongUsage) {
  expectFailure({"save", "--timeout", "nan"}, 2, "--timeout: \"nan\" is not a positive number");
  expectFailure({"save", "--timeout", "1s"}, 2, "--timeout: \"1s\" is not a positive number");
}

TEST_F(UsageTest, ANumberThatIsNotPositiveIsWrongUsage) {
  for (const char* number : {"-1", "-0.5", "x", "1 "})
    expectFailure({"top", std::string("--interval=") + number}, 2,
                  std::string("--interval: \"") + number + "\" is not a positive number");
  expectFailure({"top", "--count=0"}, 2, "--count: \"0\" is not a positive number");
}

TEST_F(UsageTest, AZeroTimeoutIsWrongUsage) {
  expectFailure({"save", "--timeout", "0"}, 2, "--timeout: \"0\" is not a positive number");
}

}  // namespace
}  // namespace contextctl
