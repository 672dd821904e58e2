// SPDX-License-Identifier: MIT
// The conversion of a string to a flag.
#include <string>

#include "tests/support/recording_test.h"

namespace {

using Str2BoolTest = RecordingTest;

TEST_F(Str2BoolTest, TrueIsOne) {
  int flag = 7;
  EXPECT_EQ(c_cfm_str2bool("true", &flag), 0);
  EXPECT_EQ(flag, 1);
  EXPECT_EQ(calls(), Calls());
}

TEST_F(Str2BoolTest, FalseIsZero) {
  int flag = 7;
  EXPECT_EQ(c_cfm_str2bool("false", &flag), 0);
  EXPECT_EQ(flag, 0);
  EXPECT_EQ(calls(), Calls());
}

// The flag and the string in the same memory.
union SharedStorage {
  char text[8];
  int flag;
};

TEST_F(Str2BoolTest, FlagMayShareTheMemoryOfTheStringTrue) {
  SharedStorage shared = {"true"};
  EXPECT_EQ(c_cfm_str2bool(shared.text, &shared.flag), 0);
  EXPECT_EQ(shared.flag, 1);
  EXPECT_EQ(calls(), Calls());
}

TEST_F(Str2BoolTest, FlagMayShareTheMemoryOfTheStringFalse) {
  SharedStorage shared = {"false"};
  EXPECT_EQ(c_cfm_str2bool(shared.text, &shared.flag), 0);
  EXPECT_EQ(shared.flag, 0);
  EXPECT_EQ(calls(), Calls());
}

TEST_F(Str2BoolTest, RejectedStringIsReportedBeforeTheLeaveTrace) {
  int flag = 7;
  EXPECT_EQ(c_cfm_str2bool("yes", &flag), -1023);
  EXPECT_EQ(calls(), Calls({"context.debugOut('cpp2c', 'yes')",
                            "context.debugOut('cpp2c', 'c_cfm_str2bool: Leave: param error!\n')"}));
}

TEST_F(Str2BoolTest, FlagIsClearedBeforeTheDiagnostic) {
  int flag = 7;
  int reported_with = 7;
  log.on_call = [&](const std::string& call) {
    if (call == "context.debugOut('cpp2c', 'yes')") reported_with = flag;
  };
  c_cfm_str2bool("yes", &flag);
  EXPECT_EQ(reported_with, 0);
}

TEST_F(Str2BoolTest, RejectedStringIsNotUsedAsAFormat) {
  int flag = 7;
  c_cfm_str2bool("%s%n%d", &flag);
  EXPECT_EQ(context.diagnostics.at(0).text, "%s%n%d");
}

TEST_F(Str2BoolTest, OtherStringFailsWithoutAContext) {
  int flag = 7;
  releaseContext(nullptr);
  proxy.instance = nullptr;
  EXPECT_EQ(c_cfm_str2bool("1", &flag), -1023);
  EXPECT_EQ(flag, 0);
}

class RejectedFlagTest : public RecordingTest, public testing::WithParamInterface<const char*> {};

TEST_P(RejectedFlagTest, FlagIsZeroAndTheStringIsReported) {
  int flag = 7;
  EXPECT_EQ(c_cfm_str2bool(GetParam(), &flag), -1023);
  EXPECT_EQ(flag, 0);
  ASSERT_EQ(context.diagnostics.size(), 2U);
  EXPECT_EQ(context.diagnostics[0].text, GetParam());
}

INSTANTIATE_TEST_SUITE_P(Texts, RejectedFlagTest,
                         testing::Values("TRUE", "True", "FALSE", "1", "0", "", " true", "true ", "truest",
                                         "tru", "falsehood", "fals"));

}  // namespace
