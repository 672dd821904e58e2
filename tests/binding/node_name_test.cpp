// SPDX-License-Identifier: MIT
// The names of a node's parent and grandparent, and cutting a full name at its last dot.
#include <algorithm>
#include <string>
#include <vector>

#include "tests/support/recording_test.h"

namespace {

using NodeNameTest = RecordingTest;

// The results of the functions for one full name.
struct Name {
  const char* fullname;
  const char* parent;
  const char* grand;
  const char* cut;
  int cut_result;
};

constexpr Name kNames[] = {
    {"", "", "", "", -1019},
    {".", "", "", "", 0},
    {"..", ".", "", ".", 0},
    {"...", "..", ".", "..", 0},
    {" ", "", "", " ", -1019},
    {"   ", "", "", "   ", -1019},
    {" \n\t\r", "", "", " \n\t\r", -1019},
    {". ", "", "", "", 0},
    {" .", "", "", " ", 0},
    {"A", "", "", "A", -1019},
    {"A\n", "", "", "A\n", -1019},
    {"A.", "", "", "A", 0},
    {"A. ", "", "", "A", 0},
    {"A.\n", "", "", "A", 0},
    {"A..", "A.", "", "A.", 0},
    {"A.\n.", "A.", "", "A.\n", 0},
    {".A", ".", "", "", 0},
    {".A.", ".", "", ".A", 0},
    {"..A", "..", ".", ".", 0},
    {"A.B", "A.", "", "A", 0},
    {"A.B.", "A.", "", "A.B", 0},
    {"A.B ", "A.", "", "A", 0},
    {"A.B. ", "A.", "", "A.B", 0},
    {" A.B", " A.", "", " A", 0},
    {"A .B", "A .", "", "A ", 0},
    {"A..B", "A..", "A.", "A.", 0},
    {"A..B.", "A..", "A.", "A..B", 0},
    {"A. .B", "A. .", "A.", "A. ", 0},
    {"A.B.C", "A.B.", "A.", "A.B", 0},
    {"A.B.C.", "A.B.", "A.", "A.B.C", 0},
    {"A.B.C\n", "A.B.", "A.", "A.B", 0},
    {"A.B.C\r\n", "A.B.", "A.", "A.B", 0},
    {"A.B.C\t", "A.B.", "A.", "A.B", 0},
    {"A.B.C.\n", "A.B.", "A.", "A.B.C", 0},
    {"A.B.C. \n\t\r", "A.B.", "A.", "A.B.C", 0},
    {"A.B.C..", "A.B.C.", "A.B.", "A.B.C.", 0},
    {"A.B.C.D", "A.B.C.", "A.B.", "A.B.C", 0},
    {"A.B.C.D.E.F.", "A.B.C.D.E.", "A.B.C.D.", "A.B.C.D.E.F", 0},
    {"Device.Interface.12.Address", "Device.Interface.12.", "Device.Interface.", "Device.Interface.12", 0},
    // Characters that are not ignored at the end.
    {"A.B.\v", "A.B.", "A.", "A.B", 0},
    {"A.B.\f", "A.B.", "A.", "A.B", 0},
    {"A.B.\xc2\xa0", "A.B.", "A.", "A.B", 0},
    {"\xff.\xfe.\xfd", "\xff.\xfe.", "\xff.", "\xff.\xfe", 0},
};

TEST_F(NodeNameTest, ParentNameIsFound) {
  for (const Name& name : kNames) {
    SCOPED_TRACE(::testing::PrintToString(name.fullname));
    char buf[64] = "untouched";
    EXPECT_EQ(c_cfm_get_parent_name(name.fullname, buf, sizeof buf), 0);
    EXPECT_STREQ(buf, name.parent);
    EXPECT_EQ(calls(), Calls());
  }
}

TEST_F(NodeNameTest, GrandparentNameIsFound) {
  for (const Name& name : kNames) {
    SCOPED_TRACE(::testing::PrintToString(name.fullname));
    char buf[64] = "untouched";
    EXPECT_EQ(c_cfm_get_grand_name(name.fullname, buf, sizeof buf), 0);
    EXPECT_STREQ(buf, name.grand);
    EXPECT_EQ(calls(), Calls());
  }
}

TEST_F(NodeNameTest, FullNameIsCutAtItsLastDot) {
  for (const Name& name : kNames) {
    SCOPED_TRACE(::testing::PrintToString(name.fullname));
    std::string text = name.fullname;
    EXPECT_EQ(c_cfm_parent_fullname(text.data()), name.cut_result);
    EXPECT_STREQ(text.c_str(), name.cut);
  }
}

TEST_F(NodeNameTest, CutReportsOnlyNamesWithoutADot) {
  for (const Name& name : kNames) {
    SCOPED_TRACE(::testing::PrintToString(name.fullname));
    std::string text = name.fullname;
    c_cfm_parent_fullname(text.data());
    const Calls report = {
        "context.debugOut('framework/inc/include_c', 'c_cfm_parent_fullname: Leave: not find!\n')"};
    EXPECT_EQ(calls(), name.cut_result == 0 ? Calls() : report);
  }
}

TEST_F(NodeNameTest, CutOverwritesOnlyTheDot) {
  char name[] = "A.B.C";
  c_cfm_parent_fullname(name);
  EXPECT_EQ(std::string(name, sizeof name), std::string("A.B\0C\0", 6));
}

TEST_F(NodeNameTest, CutRemovesATrailingDotBeforeTheLastComponent) {
  char name[] = "A.B.C.";
  c_cfm_parent_fullname(name);
  EXPECT_STREQ(name, "A.B.C");
  c_cfm_parent_fullname(name);
  EXPECT_STREQ(name, "A.B");
  EXPECT_EQ(calls(), Calls());
}

TEST_F(NodeNameTest, CutOfNullIsReported) {
  EXPECT_EQ(c_cfm_parent_fullname(nullptr), -1023);
  EXPECT_EQ(calls(), Calls({"context.debugOut('framework/inc/include_c', 'c_cfm_parent_fullname: Leave: "
                            "param error!\n')"}));
}

TEST_F(NodeNameTest, LongNamesAreNotTruncated) {
  const std::string component(3000, 'x');
  const std::string fullname = component + '.' + component + '.' + component;
  std::vector<char> buf(10000, '#');
  c_cfm_get_parent_name(fullname.c_str(), buf.data(), 10000);
  EXPECT_EQ(buf.data(), component + '.' + component + '.');
  c_cfm_get_grand_name(fullname.c_str(), buf.data(), 10000);
  EXPECT_EQ(buf.data(), component + '.');
}

// One of the two functions that write to a buffer.
struct PrefixFunction {
  const char* name;
  int (*get)(const char* fullname, char* buf, unsigned int buf_len);
  const char* fullname;  // its result is "A.B."
};

class PrefixBufferTest : public RecordingTest, public ::testing::WithParamInterface<PrefixFunction> {
 protected:
  // Calls the function with a buffer of `buf_len` bytes and returns the first eight bytes: `#` is a byte that
  // was not written, `0` a terminator.
  std::string filled(unsigned int buf_len) {
    std::string buf(8, '#');
    EXPECT_EQ(GetParam().get(GetParam().fullname, buf.data(), buf_len), 0);
    std::replace(buf.begin(), buf.end(), '\0', '0');
    return buf;
  }

  Calls report() {
    return {"context.debugOut('cpp2c', '" + std::string(GetParam().name) + " param error!')"};
  }
};

TEST_P(PrefixBufferTest, OfOneByteIsNotWritten) {
  EXPECT_EQ(filled(1), "########");
}

TEST_P(PrefixBufferTest, OfTwoBytesReceivesOnlyATerminator) {
  EXPECT_EQ(filled(2), "0#######");
}

TEST_P(PrefixBufferTest, OfFiveBytesReceivesThreeCharactersAndATerminator) {
  EXPECT_EQ(filled(5), "A.B0####");
}

TEST_P(PrefixBufferTest, OfSixBytesReceivesAllFourCharacters) {
  EXPECT_EQ(filled(6), "A.B.0###");
}

TEST_P(PrefixBufferTest, LargerThanNeededIsNotWrittenAfterTheTerminator) {
  EXPECT_EQ(filled(8), "A.B.0###");
}

TEST_P(PrefixBufferTest, TooSmallSucceedsWithoutADiagnostic) {
  char buf[3];
  EXPECT_EQ(GetParam().get("Aa.Bb.Cc.Dd", buf, sizeof buf), 0);
  EXPECT_EQ(calls(), Calls());
}

TEST_P(PrefixBufferTest, ReceivesAnEmptyPrefix) {
  char buf[4] = "###";
  EXPECT_EQ(GetParam().get("A", buf, sizeof buf), 0);
  EXPECT_EQ(std::string(buf, 3), std::string("\0##", 3));
}

TEST_P(PrefixBufferTest, MustNotBeNull) {
  EXPECT_EQ(GetParam().get("A.B.C", nullptr, 10), -1023);
  EXPECT_EQ(calls(), report());
}

TEST_P(PrefixBufferTest, MustNotHaveSizeZero) {
  char buf[4] = "###";
  EXPECT_EQ(GetParam().get("A.B.C", buf, 0), -1023);
  EXPECT_STREQ(buf, "###");
  EXPECT_EQ(calls(), report());
}

TEST_P(PrefixBufferTest, NullWithSizeZeroIsReportedOnce) {
  EXPECT_EQ(GetParam().get("", nullptr, 0), -1023);
  EXPECT_EQ(calls(), report());
}

INSTANTIATE_TEST_SUITE_P(
    NodeName, PrefixBufferTest,
    ::testing::Values(PrefixFunction{"c_cfm_get_parent_name", c_cfm_get_parent_name, "A.B.C"},
                      PrefixFunction{"c_cfm_get_grand_name", c_cfm_get_grand_name, "A.B.C.D"}),
    [](const auto& function) {
      return function.param.get == c_cfm_get_parent_name ? "Parent" : "Grandparent";
    });

}  // namespace
