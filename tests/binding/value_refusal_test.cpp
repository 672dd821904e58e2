// SPDX-License-Identifier: MIT
// The checks that c_cfm_set_value() and c_cfm_get_value() have in common.
#include <ostream>
#include <string>

#include "tests/support/late_context_test.h"
#include "tests/support/recording_test.h"

namespace {

// One of the two functions, with their common arguments.
struct Access {
  const char* name;
  int (*call)(const char* fullname, const char* type, void* data, unsigned int data_len);
};

void PrintTo(const Access& access, std::ostream* out) {
  *out << access.name;
}

int writeLeaf(const char* fullname, const char* type, void* data, unsigned int data_len) {
  return c_cfm_set_value(fullname, 1, type, data, data_len);
}

class ValueRefusalTest : public RecordingTest, public testing::WithParamInterface<Access> {
 protected:
  ValueRefusalTest() { cfm.leaves["A.B"] = {"ipaddr", "10.0.0.1", 8}; }

  int access(const char* fullname, const char* type, void* data, unsigned int data_len) {
    return GetParam().call(fullname, type, data, data_len);
  }

  // Expects that the only call is the diagnostic `message`.
  void expectReportAlone(const std::string& message) {
    EXPECT_EQ(calls(), Calls({"context.debugOut('cpp2c', '" + message + "')"}));
  }

  char buffer[16] = "untouched";
};

TEST_P(ValueRefusalTest, NullNameIsRejectedFirst) {
  EXPECT_EQ(access(nullptr, nullptr, nullptr, 0), -1023);
  expectReportAlone("fullname is NULL, error!");
}

TEST_P(ValueRefusalTest, NullTypeIsRejectedSecond) {
  EXPECT_EQ(access("A.B", nullptr, nullptr, 0), -1023);
  expectReportAlone("type is NULL, error!");
}

TEST_P(ValueRefusalTest, NullDataIsRejected) {
  EXPECT_EQ(access("A.B", "ipaddr", nullptr, 4), -1023);
  expectReportAlone("data is NULL or data_len is 0, error!");
}

TEST_P(ValueRefusalTest, LengthZeroIsRejected) {
  EXPECT_EQ(access("A.B", "ipaddr", buffer, 0), -1023);
  expectReportAlone("data is NULL or data_len is 0, error!");
  EXPECT_STREQ(buffer, "untouched");
}

TEST_P(ValueRefusalTest, DiagnosticHasALine) {
  access(nullptr, nullptr, nullptr, 0);
  EXPECT_GT(context.diagnostics.at(0).line, 0);
}

TEST_P(ValueRefusalTest, MissingServiceIsReportedInLowerCase) {
  context.missing.insert("getCfm");
  EXPECT_EQ(access("A.B", "ipaddr", buffer, 4), -1022);
  EXPECT_EQ(calls(), Calls({"context.getCfm()", "context.debugOut('cpp2c', 'not inited, error!')"}));
}

TEST_P(ValueRefusalTest, UnknownNameIsReportedAsFailedAllocation) {
  EXPECT_EQ(access("A.C", "ipaddr", buffer, 4), -1022);
  EXPECT_EQ(calls(), Calls({"context.getCfm()", "cfm.getNode('A.C')",
                            "context.debugOut('cpp2c', 'malloc memory failed!')"}));
}

TEST_P(ValueRefusalTest, WrongTypeIsRejectedAndTheNodeReleased) {
  EXPECT_EQ(access("A.B", "str", buffer, 4), -1023);
  EXPECT_EQ(calls(), Calls({"context.getCfm()", "cfm.getNode('A.B')", "node.getType()",
                            "context.debugOut('cpp2c', 'data type error!')", "cfm.releaseNode('A.B')"}));
  EXPECT_STREQ(buffer, "untouched");
}

TEST_P(ValueRefusalTest, TypeComparisonIsExact) {
  for (const char* type : {"IPADDR", "ipaddr ", "ipadd", "ipaddress", ""}) {
    EXPECT_EQ(access("A.B", type, buffer, 4), -1023) << '"' << type << '"';
  }
}

TEST_P(ValueRefusalTest, NodeTypeIsComparedBeyondAnEmbeddedNul) {
  cfm.leaves["A.B"].type = std::string("ipaddr\0x", 8);
  EXPECT_EQ(access("A.B", "ipaddr", buffer, 4), -1023);
}

class ValueWithoutContextTest : public LateContextTest, public testing::WithParamInterface<Access> {};

TEST_P(ValueWithoutContextTest, MissingContextIsReportedWithACapitalLetter) {
  char buffer[16] = "untouched";
  EXPECT_EQ(GetParam().call("A.B", "ipaddr", buffer, 4), -1022);
  EXPECT_EQ(calls(), Calls({"getInstance(null)", "getInstance(null)",
                            "context.debugOut('cpp2c', 'Not inited, error!')"}));
  EXPECT_STREQ(buffer, "untouched");
}

const auto kFunctions = testing::Values(Access{"Write", writeLeaf}, Access{"Read", c_cfm_get_value});
const auto kName = [](const auto& access) { return std::string(access.param.name); };

INSTANTIATE_TEST_SUITE_P(Functions, ValueRefusalTest, kFunctions, kName);
INSTANTIATE_TEST_SUITE_P(Functions, ValueWithoutContextTest, kFunctions, kName);

}  // namespace
