// SPDX-License-Identifier: MIT
// The two forms of an option's argument, and what is said about misspelt options.
#include <errno.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/start/options.h"
#include "tests/host/support/error_text.h"

namespace host {
namespace {

Options read(std::vector<const char*> arguments) {
  arguments.insert(arguments.begin(), "service");
  return readOptions(static_cast<int>(arguments.size()), arguments.data());
}

std::string mistakeIn(const std::vector<const char*>& arguments) {
  return errorOf([&] { read(arguments); });
}

std::string refusal(const std::string& text) {
  return "-1023 " + std::string(program_invocation_short_name) + ": " + text;
}

TEST(OptionFormsTest, ArgumentFollowsAnEqualsSign) {
  const Options options =
      read({"--config=c.json", "--state=s.db", "--module=a.so", "--control=sock", "--log-level=error",
            "--log-file=l.txt", "--clock=virtual", "--script=s.json"});
  EXPECT_EQ(options.config, "c.json");
  EXPECT_EQ(options.state, "s.db");
  EXPECT_EQ(options.modules, std::vector<std::string>{"a.so"});
  EXPECT_EQ(options.control, "sock");
  EXPECT_EQ(options.log_level, C_LOG_ERROR);
  EXPECT_EQ(options.log_file, "l.txt");
  EXPECT_EQ(options.clock, Clock::Kind::kVirtual);
  EXPECT_EQ(options.script, "s.json");
}

TEST(OptionFormsTest, FirstEqualsSignEndsTheName) {
  EXPECT_EQ(read({"--config=a=b.json"}).config, "a=b.json");
  EXPECT_EQ(read({"--config", "a=b.json"}).config, "a=b.json");
}

TEST(OptionFormsTest, BothFormsMayBeMixed) {
  const Options options = read({"--config=c.json", "--state", "s.db", "--debug"});
  EXPECT_EQ(options.config, "c.json");
  EXPECT_EQ(options.state, "s.db");
  EXPECT_TRUE(options.debug);
}

TEST(OptionFormsTest, ArgumentOfStrictIsOptional) {
  EXPECT_EQ(read({"--strict"}).strictness, Strictness::kWarn);
  EXPECT_EQ(read({"--strict=fatal"}).strictness, Strictness::kFatal);
  EXPECT_EQ(mistakeIn({"--strict=loud"}), refusal("unknown strictness \"loud\"; known: fatal"));
  EXPECT_EQ(mistakeIn({"--strict", "fatal"}), refusal("unknown option \"fatal\""));
}

TEST(OptionFormsTest, EmptyArgumentIsAMissingOne) {
  EXPECT_EQ(mistakeIn({"--config="}), refusal("the option \"--config\" needs an argument"));
  EXPECT_EQ(mistakeIn({"--config=", "c.json"}), refusal("the option \"--config\" needs an argument"));
  EXPECT_EQ(mistakeIn({"--strict="}), refusal("the option \"--strict\" needs an argument"));
}

TEST(OptionFormsTest, OptionWithoutArgumentTakesNone) {
  EXPECT_EQ(mistakeIn({"--debug=yes"}), refusal("the option \"--debug\" takes no argument"));
  EXPECT_EQ(mistakeIn({"--debug="}), refusal("the option \"--debug\" takes no argument"));
}

TEST(OptionFormsTest, SimilarOptionIsSuggested) {
  EXPECT_EQ(mistakeIn({"--conifg", "c.json"}),
            refusal("unknown option \"--conifg\"; did you mean \"--config\"?"));
  EXPECT_EQ(mistakeIn({"--Debug"}), refusal("unknown option \"--Debug\"; did you mean \"--debug\"?"));
}

// The argument may be secret, and is not what is wrong.
TEST(OptionFormsTest, ArgumentOfAnUnknownOptionIsNotShown) {
  EXPECT_EQ(mistakeIn({"--stat=s.db"}), refusal("unknown option \"--stat\"; did you mean \"--state\"?"));
  EXPECT_EQ(mistakeIn({"--colour=red"}), refusal("unknown option \"--colour\""));
}

TEST(OptionFormsTest, NullEndsTheArguments) {
  const char* arguments[] = {"service", "--config", nullptr, "--debug"};
  EXPECT_EQ(errorOf([&] { readOptions(4, arguments); }),
            refusal("the option \"--config\" needs an argument"));
  arguments[1] = nullptr;
  EXPECT_FALSE(readOptions(4, arguments).debug);
}

}  // namespace

}  // namespace host
