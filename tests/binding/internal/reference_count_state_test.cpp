// SPDX-License-Identifier: MIT
#include "binding/globals.h"
#include "tests/support/recording_test.h"

namespace {

class ReferenceCountStateTest : public RecordingTest {
 protected:
  ReferenceCountStateTest() { g_reference_counts.clear(); }
};

using Counts = std::map<std::string, int>;

TEST_F(ReferenceCountStateTest, IncreaseCreatesAnEntry) {
  reference_increase("a");
  EXPECT_EQ(g_reference_counts, Counts({{"a", 1}}));
}

TEST_F(ReferenceCountStateTest, DecreaseOfANewNameCreatesAnEntryOfZero) {
  reference_decrease("a");
  EXPECT_EQ(g_reference_counts, Counts({{"a", 0}}));
}

TEST_F(ReferenceCountStateTest, EntryRemainsAtZero) {
  reference_increase("a");
  reference_decrease("a");
  reference_decrease("a");
  EXPECT_EQ(g_reference_counts, Counts({{"a", 0}}));
}

TEST_F(ReferenceCountStateTest, DecreaseDoesNotChangeANegativeCount) {
  g_reference_counts["a"] = -3;
  EXPECT_EQ(reference_decrease("a"), -3);
  EXPECT_EQ(g_reference_counts, Counts({{"a", -3}}));
}

TEST_F(ReferenceCountStateTest, EachNameHasItsEntry) {
  reference_increase("A.B");
  reference_increase("A.B.");
  reference_increase("A.B.");
  reference_decrease("");
  EXPECT_EQ(g_reference_counts, Counts({{"", 0}, {"A.B", 1}, {"A.B.", 2}}));
}

TEST_F(ReferenceCountStateTest, TeardownKeepsAllEntries) {
  reference_increase("a");
  reference_decrease("b");
  c_context_deinit();
  EXPECT_EQ(g_reference_counts, Counts({{"a", 1}, {"b", 0}}));
}

}  // namespace
