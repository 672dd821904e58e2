// SPDX-License-Identifier: MIT
#include "util/similar_name.h"

#include <initializer_list>
#include <string>

#include <gtest/gtest.h>

namespace {

std::string similarTo(const std::string& name, std::initializer_list<const char*> known) {
  util::SimilarName similar(name);
  for (const char* one : known) similar.consider(one);
  return similar.best();
}

TEST(SimilarNameTest, NameWithUpToTwoTypingErrorsIsSimilar) {
  EXPECT_EQ(similarTo("Limit", {"Limits"}), "Limits");
  EXPECT_EQ(similarTo("Limit", {"Limi"}), "Limi");
  EXPECT_EQ(similarTo("Limit", {"Lamet"}), "Lamet");
  EXPECT_EQ(similarTo("Limit", {"Lamits"}), "Lamits");
}

TEST(SimilarNameTest, NameWithThreeTypingErrorsIsNotSimilar) {
  EXPECT_EQ(similarTo("Heartbeat", {"Hoartboot"}), "");
  EXPECT_EQ(similarTo("Heartbeat", {"Heartbeat123"}), "");
  EXPECT_EQ(similarTo("Heartbeat", {"Heartb"}), "");
}

// Of a name of three letters, one may be wrong; of one or two letters, none.
TEST(SimilarNameTest, NameWithLessThanHalfItsLettersWrongIsSimilar) {
  EXPECT_EQ(similarTo("mtu", {"mru"}), "mru");
  EXPECT_EQ(similarTo("stop", {"step"}), "step");
  EXPECT_EQ(similarTo("Limit", {"Lamet"}), "Lamet");
}

TEST(SimilarNameTest, NameWithHalfItsLettersWrongIsNotSimilar) {
  EXPECT_EQ(similarTo("a", {"b"}), "");
  EXPECT_EQ(similarTo("on", {"off", "in", "o"}), "");
  EXPECT_EQ(similarTo("mtu", {"mrs"}), "");
  EXPECT_EQ(similarTo("stop", {"slow"}), "");
}

TEST(SimilarNameTest, NameInAnotherCaseIsSimilar) {
  EXPECT_EQ(similarTo("gateway.LIMIT", {"Gateway.Limit"}), "Gateway.Limit");
  EXPECT_EQ(similarTo("ON", {"on"}), "on");
}

TEST(SimilarNameTest, FewestTypingErrorsWin) {
  EXPECT_EQ(similarTo("Limit", {"Lamid", "Limits", "Limib"}), "Limits");
}

TEST(SimilarNameTest, ShortNameMayHaveMoreErrorsIfAsked) {
  util::SimilarName similar("up", util::SimilarName::kMostErrors);
  similar.consider("on");
  EXPECT_EQ(similar.best(), "on");
}

TEST(SimilarNameTest, NothingIsSimilarToAnEmptyList) {
  EXPECT_EQ(similarTo("Limit", {}), "");
}

}  // namespace
