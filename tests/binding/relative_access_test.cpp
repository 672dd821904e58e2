// SPDX-License-Identifier: MIT
// Reads and writes of leaves whose names are relative to an object.
#include <cstdint>
#include <string>

#include "tests/binding/relative_access.h"
#include "tests/support/recording_test.h"

namespace {

class RelativeAccessTest : public RecordingTest, public ::testing::WithParamInterface<RelativeAccess> {
 protected:
  // Accesses a leaf that the service does not know and returns the resulting calls.
  Calls access(const std::string& base, const std::string& relpath, const std::string& name) {
    EXPECT_EQ(GetParam().run(base.c_str(), relpath.c_str(), name.c_str(), "int"), -1022);
    return calls();
  }

  // The expected calls if the full name is `fullname` and `stopped` steps went beyond the top.
  static Calls reached(const std::string& fullname, int stopped = 0) {
    Calls expected(
        static_cast<std::size_t>(stopped),
        "context.debugOut('framework/inc/include_c', 'c_cfm_parent_fullname: Leave: not find!\n')");
    expected.insert(expected.end(), {"context.getCfm()", "cfm.getNode('" + fullname + "')",
                                     "context.debugOut('cpp2c', 'malloc memory failed!')"});
    return expected;
  }

  Calls leave(const std::string& text) {
    return {"context.debugOut('cpp2c', '" + std::string(GetParam().function) + ": Leave: " + text + "\n')"};
  }
};

TEST_P(RelativeAccessTest, EmptyPathAddsNoDot) {
  EXPECT_EQ(access("A.B.C", "", "x"), reached("A.B.Cx"));
  EXPECT_EQ(access("A.B.C.", "", "x"), reached("A.B.C.x"));
}

TEST_P(RelativeAccessTest, OneParentGoesUpOneLevel) {
  EXPECT_EQ(access("A.B.C", "PARENT.", "x"), reached("A.B.x"));
}

TEST_P(RelativeAccessTest, TwoParentsGoUpTwoLevels) {
  EXPECT_EQ(access("A.B.C", "PARENT.PARENT.", "x"), reached("A.x"));
}

TEST_P(RelativeAccessTest, FirstParentRemovesOnlyATrailingDotOfTheBase) {
  EXPECT_EQ(access("A.B.C.", "PARENT.", "x"), reached("A.B.C.x"));
  EXPECT_EQ(access("A.B.C.", "PARENT.PARENT.", "x"), reached("A.B.x"));
}

TEST_P(RelativeAccessTest, EachStepBeyondTheTopIsReported) {
  EXPECT_EQ(access("A.B", "PARENT.PARENT.PARENT.", "x"), reached("A.x", 2));
}

TEST_P(RelativeAccessTest, OnlyParentsInThePathCount) {
  struct Row {
    const char* relpath;
    const char* fullname;
  };
  constexpr Row kRows[] = {
      {"self", "A.B.C.x"},
      {".", "A.B.C.x"},
      {" ", "A.B.C.x"},
      {"PARENT", "A.B.C.x"},
      {"ARENT.", "A.B.C.x"},
      {"parent.", "A.B.C.x"},
      {"PARENT .", "A.B.C.x"},
      {"PARENTPARENT.", "A.B.x"},
      {"PARENT.PARENT", "A.B.x"},
      {"xPARENT.", "A.B.x"},
      {"PARENT.x", "A.B.x"},
      {" PARENT. ", "A.B.x"},
      {"PARPARENT.", "A.B.x"},
      {"PARENT..PARENT.", "A.x"},
      {"PARENT.between.PARENT.", "A.x"},
      {"PARENT.PARENT.PARENT", "A.x"},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(::testing::PrintToString(row.relpath));
    EXPECT_EQ(access("A.B.C", row.relpath, "x"), reached(row.fullname));
  }
}

// The results of going up from one base.
struct Base {
  const char* base;
  const char* once;
  int once_stopped;
  const char* twice;
  int twice_stopped;
};

constexpr Base kBases[] = {
    {"", "", 1, "", 2},
    {".", "", 0, "", 1},
    {"..", ".", 0, "", 0},
    {"   ", "   ", 1, "   ", 2},
    {"\n", "\n", 1, "\n", 2},
    {"A", "A", 1, "A", 2},
    {"A.", "A", 0, "A", 1},
    {"A. ", "A", 0, "A", 1},
    {"A..", "A.", 0, "A", 0},
    {"A.\n.", "A.\n", 0, "A", 0},
    {".A", "", 0, "", 1},
    {"A.B", "A", 0, "A", 1},
    {"A.B ", "A", 0, "A", 1},
    {" A.B", " A", 0, " A", 1},
    {"A.B.", "A.B", 0, "A", 0},
    {"A..B", "A.", 0, "A", 0},
    {"A. .B", "A. ", 0, "A", 0},
    {"A.B.C\n", "A.B", 0, "A", 0},
    {"A.B.C.\n", "A.B.C", 0, "A.B", 0},
    {"A.B.C \t\r\n", "A.B", 0, "A", 0},
    {"A.B.C.D", "A.B.C", 0, "A.B", 0},
    {"A.B.\v", "A.B", 0, "A", 0},
};

TEST_P(RelativeAccessTest, EmptyPathKeepsTheBaseUnchanged) {
  for (const Base& row : kBases) {
    SCOPED_TRACE(::testing::PrintToString(row.base));
    EXPECT_EQ(access(row.base, "", "x"), reached(std::string(row.base) + "x"));
  }
}

TEST_P(RelativeAccessTest, PathWithoutAParentAddsADotToTheBase) {
  for (const Base& row : kBases) {
    SCOPED_TRACE(::testing::PrintToString(row.base));
    EXPECT_EQ(access(row.base, "self", "x"), reached(std::string(row.base) + ".x"));
  }
}

TEST_P(RelativeAccessTest, OneParentShortensTheBaseOnce) {
  for (const Base& row : kBases) {
    SCOPED_TRACE(::testing::PrintToString(row.base));
    EXPECT_EQ(access(row.base, "PARENT.", "x"), reached(std::string(row.once) + ".x", row.once_stopped));
  }
}

TEST_P(RelativeAccessTest, TwoParentsShortenTheBaseTwice) {
  for (const Base& row : kBases) {
    SCOPED_TRACE(::testing::PrintToString(row.base));
    EXPECT_EQ(access(row.base, "PARENT.PARENT.", "x"),
              reached(std::string(row.twice) + ".x", row.twice_stopped));
  }
}

TEST_P(RelativeAccessTest, LeafNameIsAppendedUnchanged) {
  for (const char* name : {"", ".", " ", "x.", ".x", "x.y", "x\n", "PARENT.", "%s", "\xff"}) {
    SCOPED_TRACE(::testing::PrintToString(name));
    EXPECT_EQ(access("A.B", "PARENT.", name), reached(std::string("A.") + name));
    EXPECT_EQ(access("A.B", "", name), reached(std::string("A.B") + name));
  }
}

TEST_P(RelativeAccessTest, BaseIsNotUsedAsAFormat) {
  EXPECT_EQ(access("%s%n.%d", "PARENT.", "%x"), reached("%s%n.%x"));
}

TEST_P(RelativeAccessTest, PathMayBeLongerThanAName) {
  std::string relpath;
  for (int level = 0; level < 100; ++level) relpath += "PARENT.";
  EXPECT_EQ(access("A.B", relpath, "x"), reached("A.x", 99));
}

TEST_P(RelativeAccessTest, FullNameOf511CharactersIsNotTruncated) {
  const std::string base(509, 'b');
  EXPECT_EQ(access(base, "self", "x"), reached(base + ".x"));
  EXPECT_EQ(access(base, "", "xy"), reached(base + "xy"));
}

TEST_P(RelativeAccessTest, FullNameOf512CharactersIsTruncatedTo511) {
  const std::string base(509, 'b');
  EXPECT_EQ(access(base, "self", "xy"), reached(base + ".x"));
  EXPECT_EQ(access(base, "", "xyz"), reached(base + "xy"));
}

TEST_P(RelativeAccessTest, LongerFullNameIsTruncatedTo511Characters) {
  EXPECT_EQ(access("A", "self", std::string(2000, 'x')), reached("A." + std::string(509, 'x')));
  EXPECT_EQ(access("A", "", std::string(2000, 'x')), reached("A" + std::string(510, 'x')));
}

TEST_P(RelativeAccessTest, FullNameIsTruncatedAfterThePathIsFollowed) {
  const std::string base = "A." + std::string(509, 'b');
  EXPECT_EQ(access(base, "PARENT.", "x"), reached("A.x"));
}

TEST_P(RelativeAccessTest, BaseOf511CharactersLeavesNoRoomForTheName) {
  const std::string base(511, 'b');
  EXPECT_EQ(access(base, "", "x"), reached(base));
  EXPECT_EQ(access(base, "self", "x"), reached(base));
}

TEST_P(RelativeAccessTest, LongerBaseIsTruncatedTo511Characters) {
  for (const std::size_t length : {512U, 513U, 600U, 1024U, 5000U}) {
    SCOPED_TRACE(length);
    const std::string base(length, 'b');
    EXPECT_EQ(access(base, "", "x"), reached(std::string(511, 'b')));
    EXPECT_EQ(access(base, "self", "x"), reached(std::string(511, 'b')));
    EXPECT_EQ(access(base, "PARENT.", "x"), reached(std::string(511, 'b'), 1));
  }
}

TEST_P(RelativeAccessTest, ParentShortensATruncatedBase) {
  for (const std::size_t length : {510U, 600U}) {
    SCOPED_TRACE(length);
    EXPECT_EQ(access("A." + std::string(length, 'b'), "PARENT.", "x"), reached("A.x"));
    EXPECT_EQ(access("A." + std::string(length, 'b'), "PARENT.PARENT.", "x"), reached("A.x", 1));
  }
}

TEST_P(RelativeAccessTest, NullStringIsReportedAndNothingElseIsDone) {
  const char* const texts[] = {"A.B", "PARENT.", "x", "int"};
  for (std::size_t missing = 0; missing < 4; ++missing) {
    SCOPED_TRACE(missing);
    const char* given[] = {texts[0], texts[1], texts[2], texts[3]};
    given[missing] = nullptr;
    EXPECT_EQ(GetParam().run(given[0], given[1], given[2], given[3]), -1023);
    EXPECT_EQ(calls(), leave("param error!"));
  }
}

TEST_P(RelativeAccessTest, FourNullStringsAreReportedOnce) {
  EXPECT_EQ(GetParam().run(nullptr, nullptr, nullptr, nullptr), -1023);
  EXPECT_EQ(calls(), leave("param error!"));
}

TEST_P(RelativeAccessTest, TypeIsCheckedLast) {
  cfm.leaves["A.x"] = {"uint", "42"};
  EXPECT_EQ(GetParam().run("A.B", "PARENT.", "x", "int"), -1023);
  EXPECT_EQ(calls(), Calls({"context.getCfm()", "cfm.getNode('A.x')", "node.getType()",
                            "context.debugOut('cpp2c', 'data type error!')", "cfm.releaseNode('A.x')"}));
}

TEST_P(RelativeAccessTest, WithoutAConfigurationServiceFailsLikeTheTypedFunction) {
  context.missing.insert("getCfm");
  EXPECT_EQ(GetParam().run("A.B", "PARENT.", "x", "int"), -1022);
  EXPECT_EQ(calls(), Calls({"context.getCfm()", "context.debugOut('cpp2c', 'not inited, error!')"}));
}

INSTANTIATE_TEST_SUITE_P(NodeName, RelativeAccessTest, relativeAccesses(), verbOf);

using RelativeWriteTest = RecordingTest;

TEST_F(RelativeWriteTest, LastArgumentIsTheOption) {
  cfm.leaves["A.x"] = {"int", "0"};
  const std::int32_t word = -5;
  EXPECT_EQ(c_cfm_set_value_v2("A.B", "PARENT.", "x", "int", &word, sizeof word, 7), 0);
  EXPECT_EQ(calls(), Calls({"context.getCfm()", "cfm.getNode('A.x')", "node.getType()",
                            "cfm.releaseNode('A.x')", "cfm.setValue('A.x', '-5', 7)"}));
}

TEST_F(RelativeWriteTest, LargeUnsignedWordIsWrittenAsANegativeNumber) {
  cfm.leaves["A.x"] = {"uint", "0"};
  const std::uint32_t word = 3000000000;
  EXPECT_EQ(c_cfm_set_value_v2("A.B", "PARENT.", "x", "uint", &word, sizeof word, -1), 0);
  EXPECT_EQ(calls().back(), "cfm.setValue('A.x', '-1294967296', -1)");
}

TEST_F(RelativeWriteTest, WritesAfterAStepBeyondTheTop) {
  cfm.leaves["A.x"] = {"str", ""};
  EXPECT_EQ(c_cfm_set_value_v2("A.B", "PARENT.PARENT.PARENT.", "x", "str", "text", 1, 0), 0);
  EXPECT_EQ(calls().back(), "cfm.setValue('A.x', 'text', 0)");
}

TEST_F(RelativeWriteTest, ReturnsTheResultOfTheService) {
  cfm.leaves["A.x"] = {"str", ""};
  log.results["cfm.setValue"] = -31;
  EXPECT_EQ(c_cfm_set_value_v2("A.", "", "x", "str", "text", 4, 0), -31);
}

TEST_F(RelativeWriteTest, NullDataIsRejectedByTheTypedFunction) {
  EXPECT_EQ(c_cfm_set_value_v2("A.", "", "x", "str", nullptr, 4, 0), -1023);
  EXPECT_EQ(calls(), Calls({"context.debugOut('cpp2c', 'data is NULL or data_len is 0, error!')"}));
}

TEST_F(RelativeWriteTest, LengthZeroIsRejectedByTheTypedFunction) {
  EXPECT_EQ(c_cfm_set_value_v2("A.", "", "x", "str", "text", 0, 4), -1023);
  EXPECT_EQ(calls(), Calls({"context.debugOut('cpp2c', 'data is NULL or data_len is 0, error!')"}));
}

TEST_F(RelativeWriteTest, StepBeyondTheTopIsReportedBeforeTheDataIsChecked) {
  EXPECT_EQ(c_cfm_set_value_v2("A", "PARENT.", "x", "str", nullptr, 0, 0), -1023);
  EXPECT_EQ(calls(),
            Calls({"context.debugOut('framework/inc/include_c', 'c_cfm_parent_fullname: Leave: not find!\n')",
                   "context.debugOut('cpp2c', 'data is NULL or data_len is 0, error!')"}));
}

TEST_F(RelativeWriteTest, UnknownTypeSucceedsWithoutAWrite) {
  cfm.leaves["A.x"] = {"float", ""};
  EXPECT_EQ(c_cfm_set_value_v2("A.", "", "x", "float", "1.5", 3, 0), 0);
  EXPECT_EQ(calls().back(), "cfm.releaseNode('A.x')");
}

using RelativeReadTest = RecordingTest;

TEST_F(RelativeReadTest, ReadsTheValue) {
  cfm.leaves["A.x"] = {"uint", "4000", 4};
  std::uint32_t word = 0;
  EXPECT_EQ(c_cfm_get_value_v2("A.B", "PARENT.", "x", "uint", &word, sizeof word), 0);
  EXPECT_EQ(word, 4000U);
  EXPECT_EQ(calls(), Calls({"context.getCfm()", "cfm.getNode('A.x')", "node.getType()", "node.getValue()",
                            "cfm.releaseNode('A.x')"}));
}

TEST_F(RelativeReadTest, NegativeNumberIsReadAsALargeUnsignedWord) {
  cfm.leaves["A.x"] = {"uint", "-1294967296", 11};
  std::uint32_t word = 0;
  EXPECT_EQ(c_cfm_get_value_v2("A.B", "PARENT.", "x", "uint", &word, sizeof word), 0);
  EXPECT_EQ(word, 3000000000U);
}

TEST_F(RelativeReadTest, TextIsTruncatedToTheLength) {
  cfm.leaves["A.x"] = {"str", "abcdefgh", 8};
  char text[] = "########";
  EXPECT_EQ(c_cfm_get_value_v2("A.", "", "x", "str", text, 4), 0);
  EXPECT_STREQ(text, "abc#####");
}

TEST_F(RelativeReadTest, LengthOfAnIntegerIsChecked) {
  cfm.leaves["A.x"] = {"int", "5", 1};
  char word[] = "####";
  EXPECT_EQ(c_cfm_get_value_v2("A.", "", "x", "int", word, 3), -1023);
  EXPECT_STREQ(word, "####");
}

TEST_F(RelativeReadTest, NullDataIsRejectedByTheTypedFunction) {
  EXPECT_EQ(c_cfm_get_value_v2("A.", "", "x", "str", nullptr, 4), -1023);
  EXPECT_EQ(calls(), Calls({"context.debugOut('cpp2c', 'data is NULL or data_len is 0, error!')"}));
}

TEST_F(RelativeReadTest, LengthZeroIsRejectedByTheTypedFunction) {
  char text[] = "#";
  EXPECT_EQ(c_cfm_get_value_v2("A.", "", "x", "str", text, 0), -1023);
  EXPECT_STREQ(text, "#");
  EXPECT_EQ(calls(), Calls({"context.debugOut('cpp2c', 'data is NULL or data_len is 0, error!')"}));
}

}  // namespace
