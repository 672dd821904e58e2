// SPDX-License-Identifier: MIT
#include <algorithm>
#include <iterator>
#include <set>
#include <sstream>

#include "tests/contextctl/contextctl_test.h"

namespace {

class UsageTest : public ContextctlTest {
 protected:
  // From the list in the help text: the first word of each indented line below "Subcommands:".
  std::set<std::string> commandsOf(std::vector<std::string> arguments) {
    arguments.emplace_back("--help");
    std::istringstream help(run(arguments).out);
    std::set<std::string> names;
    bool in_list = false;
    for (std::string line, name; std::getline(help, line);) {
      if (in_list && std::istringstream(line) >> name && line[0] == ' ') names.insert(name);
      in_list = line == "Subcommands:" || (in_list && !line.empty());
    }
    return names;
  }

  static std::string readSource(const std::string& path) {
    std::ifstream stream(CPP2C_SOURCE_DIR "/" + path);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
};

TEST_F(UsageTest, EveryCommandIsThere) {
  EXPECT_EQ(commandsOf({}), (std::set<std::string>{
                                "add",    "attr",    "del",       "diff", "event", "export",  "get",
                                "import", "inspect", "instances", "list", "log",   "modules", "registrations",
                                "save",   "set",     "stats",     "stop", "top",   "tree",    "watch"}));
}

TEST_F(UsageTest, EveryCommandHasExamples) {
  for (const std::string& command : commandsOf({})) {
    if (command == "event") continue;  // its own commands have them
    EXPECT_NE(run({command, "--help"}).out.find("Examples:\n  contextctl " + command), std::string::npos)
        << command;
  }
  for (const std::string& command : commandsOf({"event"}))
    EXPECT_NE(run({"event", command, "--help"}).out.find("Examples:\n  contextctl event " + command),
              std::string::npos)
        << command;
}

TEST_F(UsageTest, EveryCommandIsInTheManual) {
  const std::string manual = readSource("packaging/contextctl.1");
  for (const std::string& command : commandsOf({}))
    EXPECT_NE(manual.find("\n.B " + command), std::string::npos) << command;
}

TEST_F(UsageTest, EveryCommandIsCompleted) {
  std::string completion = readSource("packaging/contextctl.bash");
  std::replace(completion.begin(), completion.end(), '\'', ' ');
  std::istringstream stream(completion);
  const std::set<std::string> words{std::istream_iterator<std::string>(stream), {}};
  for (const std::string& command : commandsOf({})) EXPECT_EQ(words.count(command), 1u) << command;
}

TEST_F(UsageTest, VersionIsPrinted) {
  expectOutput({"--version"}, "contextctl " CPP2C_VERSION "\n");
}

TEST_F(UsageTest, NoCommandIsWrongUsage) {
  expectFailure({}, 2, "no command; try --help");
}

TEST_F(UsageTest, AnUnknownCommandIsWrongUsage) {
  expectFailure({"frob"}, 2, "The following argument was not expected: frob");
}

TEST_F(UsageTest, AMissingArgumentIsWrongUsage) {
  expectFailure({"get"}, 2, "NAME is required");
}

TEST_F(UsageTest, ATimeOfNothingIsWrongUsage) {
  expectFailure({"save", "--timeout", "0"}, 2, "--timeout: 0 is no number above 0");
}

}  // namespace
