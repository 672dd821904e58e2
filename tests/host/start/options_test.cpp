// SPDX-License-Identifier: MIT
#include "host/start/options.h"

#include <errno.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/support/error_text.h"

namespace host {
namespace {

Options read(std::vector<const char*> arguments) {
  arguments.insert(arguments.begin(), "/usr/bin/service");
  const int count = static_cast<int>(arguments.size());
  arguments.push_back(nullptr);
  return readOptions(count, arguments.data());
}

std::string mistakeIn(const std::vector<const char*>& arguments) {
  return errorOf([&] { read(arguments); });
}

// Messages begin with the name of the program.
std::string refusal(const std::string& text) {
  return "-1023 " + std::string(program_invocation_short_name) + ": " + text;
}

TEST(OptionsTest, OptionsHaveDefaults) {
  const Options options = readOptions(0, nullptr);
  EXPECT_EQ(options.config, "");
  EXPECT_EQ(options.state, "");
  EXPECT_TRUE(options.modules.empty());
  EXPECT_EQ(options.log_level, C_LOG_INFO);
  EXPECT_EQ(options.log_file, "");
  EXPECT_FALSE(options.debug);
  EXPECT_EQ(options.clock, Clock::Kind::kReal);
  EXPECT_EQ(options.script, "");
}

TEST(OptionsTest, CountWithoutArgumentsIsIgnored) {
  EXPECT_EQ(readOptions(3, nullptr).config, "");
}

TEST(OptionsTest, CountEndsTheArguments) {
  const char* arguments[] = {"service", "--config", "c.json"};
  EXPECT_EQ(errorOf([&] { readOptions(2, arguments); }),
            refusal("the option \"--config\" needs an argument"));
  EXPECT_EQ(readOptions(1, arguments).config, "");
}

TEST(OptionsTest, NameOfTheProgramIsNotAnOption) {
  const char* arguments[] = {"--colour", nullptr};
  EXPECT_EQ(readOptions(1, arguments).config, "");
}

TEST(OptionsTest, EachOptionIsRead) {
  const Options options = read({"--config", "c.json", "--state", "s.db", "--log-level", "error", "--log-file",
                                "l.txt", "--debug", "--clock", "virtual", "--script", "s.json"});
  EXPECT_EQ(options.config, "c.json");
  EXPECT_EQ(options.state, "s.db");
  EXPECT_EQ(options.log_level, C_LOG_ERROR);
  EXPECT_EQ(options.log_file, "l.txt");
  EXPECT_TRUE(options.debug);
  EXPECT_EQ(options.clock, Clock::Kind::kVirtual);
  EXPECT_EQ(options.script, "s.json");
}

TEST(OptionsTest, ModulesAccumulateInOrder) {
  const Options options = read({"--module", "b.so", "--module", "a.so"});
  EXPECT_EQ(options.modules, (std::vector<std::string>{"b.so", "a.so"}));
}

TEST(OptionsTest, EveryLevelHasItsName) {
  EXPECT_EQ(read({"--log-level", "critical"}).log_level, C_LOG_CRITICAL);
  EXPECT_EQ(read({"--log-level", "error"}).log_level, C_LOG_ERROR);
  EXPECT_EQ(read({"--log-level", "warning"}).log_level, C_LOG_WARNING);
  EXPECT_EQ(read({"--log-level", "notice"}).log_level, C_LOG_NOTICE);
  EXPECT_EQ(read({"--log-level", "info"}).log_level, C_LOG_INFO);
  EXPECT_EQ(read({"--log-level", "debug"}).log_level, C_LOG_DEBUG);
}

TEST(OptionsTest, ArgumentsAfterTwoDashesAreIgnored) {
  EXPECT_EQ(read({"--debug", "--", "--colour", "red"}).debug, true);
}

TEST(OptionsTest, UnknownOptionIsRefused) {
  EXPECT_EQ(mistakeIn({"--debug", "--colour"}), refusal("unknown option \"--colour\""));
}

TEST(OptionsTest, ArgumentThatIsNotAnOptionIsRefused) {
  EXPECT_EQ(mistakeIn({"config.json"}), refusal("unknown option \"config.json\""));
}

TEST(OptionsTest, AbbreviatedOptionIsRefused) {
  EXPECT_EQ(mistakeIn({"--conf", "c.json"}),
            refusal("unknown option \"--conf\"; did you mean \"--config\"?"));
}

TEST(OptionsTest, MissingArgumentIsRefused) {
  EXPECT_EQ(mistakeIn({"--config"}), refusal("the option \"--config\" needs an argument"));
  EXPECT_EQ(mistakeIn({"--state"}), refusal("the option \"--state\" needs an argument"));
  EXPECT_EQ(mistakeIn({"--module"}), refusal("the option \"--module\" needs an argument"));
  EXPECT_EQ(mistakeIn({"--log-level"}), refusal("the option \"--log-level\" needs an argument"));
  EXPECT_EQ(mistakeIn({"--log-file"}), refusal("the option \"--log-file\" needs an argument"));
  EXPECT_EQ(mistakeIn({"--script"}), refusal("the option \"--script\" needs an argument"));
  EXPECT_EQ(mistakeIn({"--clock"}), refusal("the option \"--clock\" needs an argument"));
}

// A shell variable that is not set yields an empty argument, which is never meant as "no state file".
TEST(OptionsTest, EmptyArgumentIsRefused) {
  EXPECT_EQ(mistakeIn({"--state", ""}), refusal("the option \"--state\" needs an argument"));
  EXPECT_EQ(mistakeIn({"--config", "", "--debug"}), refusal("the option \"--config\" needs an argument"));
}

TEST(OptionsTest, RealClockMayBeNamed) {
  EXPECT_EQ(read({"--clock", "virtual", "--clock", "real"}).clock, Clock::Kind::kReal);
}

TEST(OptionsTest, UnknownClockIsRefused) {
  EXPECT_EQ(mistakeIn({"--clock", "slow"}), refusal("unknown clock \"slow\"; known clocks: real, virtual"));
}

TEST(OptionsTest, UnknownLevelIsRefused) {
  EXPECT_EQ(
      mistakeIn({"--log-level", "loud"}),
      refusal("unknown log level \"loud\"; known levels: critical, error, warning, notice, info, debug"));
}

}  // namespace

}  // namespace host
