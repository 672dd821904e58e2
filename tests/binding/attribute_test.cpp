// SPDX-License-Identifier: MIT
// Attributes of configuration nodes.
#include <climits>

#include "tests/support/late_context_test.h"
#include "tests/support/recording_test.h"

namespace {

using AttributeTest = RecordingTest;

TEST_F(AttributeTest, SetPassesBothArgumentsToTheService) {
  EXPECT_EQ(c_cfm_set_attr(3, -4), 0);
  EXPECT_EQ(calls(), Calls({"context.getCfm()", "cfm.setAttr(3, -4)"}));
}

TEST_F(AttributeTest, SetPassesAllBitsOfBothArguments) {
  c_cfm_set_attr(INT_MIN, INT_MAX);
  EXPECT_EQ(calls().back(), "cfm.setAttr(-2147483648, 2147483647)");
}

TEST_F(AttributeTest, SetReturnsTheResultOfTheService) {
  log.results["cfm.setAttr"] = -70;
  EXPECT_EQ(c_cfm_set_attr(0, 0), -70);
  EXPECT_EQ(calls(), Calls({"context.getCfm()", "cfm.setAttr(0, 0)"}));
}

TEST_F(AttributeTest, SetWithoutAConfigurationServiceIsNotInitialised) {
  context.missing.insert("getCfm");
  EXPECT_EQ(c_cfm_set_attr(3, 4), -1022);
  EXPECT_EQ(calls(), Calls({"context.getCfm()", "context.debugOut('cpp2c', 'INIT ERROR!')"}));
}

TEST_F(AttributeTest, GetPassesNodeAndPointerToTheService) {
  int value = 0;
  EXPECT_EQ(c_cfm_get_attr(INT_MIN, &value), 0);
  EXPECT_EQ(calls(), Calls({"context.getCfm()", "cfm.getAttr(-2147483648, object)"}));
  EXPECT_EQ(cfm.attribute_places, std::vector<void*>({&value}));
}

TEST_F(AttributeTest, GetDoesNotWriteTheValueItself) {
  int value = 99;
  log.results["cfm.getAttr"] = -71;
  EXPECT_EQ(c_cfm_get_attr(3, &value), -71);
  EXPECT_EQ(value, 99);
}

TEST_F(AttributeTest, GetWithANullPointerIsAParameterError) {
  EXPECT_EQ(c_cfm_get_attr(3, nullptr), -1023);
  EXPECT_EQ(calls(), Calls({"context.debugOut('cpp2c', 'PARAM ERROR!')"}));
}

TEST_F(AttributeTest, GetWithoutAConfigurationServiceIsAParameterError) {
  int value = 99;
  context.missing.insert("getCfm");
  EXPECT_EQ(c_cfm_get_attr(3, &value), -1023);
  EXPECT_EQ(value, 99);
  EXPECT_EQ(calls(), Calls({"context.getCfm()", "context.debugOut('cpp2c', 'PARAM ERROR!')"}));
}

TEST_F(AttributeTest, GetWithANullPointerAndNoServiceIsReportedOnce) {
  context.missing.insert("getCfm");
  EXPECT_EQ(c_cfm_get_attr(3, nullptr), -1023);
  EXPECT_EQ(calls(), Calls({"context.debugOut('cpp2c', 'PARAM ERROR!')"}));
}

using AttributeWithoutContextTest = LateContextTest;

TEST_F(AttributeWithoutContextTest, SetIsNotInitialised) {
  EXPECT_EQ(c_cfm_set_attr(3, 4), -1022);
  EXPECT_EQ(calls(),
            Calls({"getInstance(null)", "getInstance(null)", "context.debugOut('cpp2c', 'INIT ERROR!')"}));
}

TEST_F(AttributeWithoutContextTest, GetIsAParameterError) {
  int value = 99;
  EXPECT_EQ(c_cfm_get_attr(3, &value), -1023);
  EXPECT_EQ(value, 99);
  EXPECT_EQ(calls(),
            Calls({"getInstance(null)", "getInstance(null)", "context.debugOut('cpp2c', 'PARAM ERROR!')"}));
}

TEST_F(AttributeWithoutContextTest, GetObtainsTheContextBeforeItChecksThePointer) {
  EXPECT_EQ(c_cfm_get_attr(3, nullptr), -1023);
  EXPECT_EQ(calls(),
            Calls({"getInstance(null)", "getInstance(null)", "context.debugOut('cpp2c', 'PARAM ERROR!')"}));
}

}  // namespace
