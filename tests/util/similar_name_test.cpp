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
  EXPECT_EQ(similarTo("Limit", {"Lamess"}), "");
  EXPECT_EQ(similarTo("Limit", {"Limit123"}), "");
}

TEST(SimilarNameTest, NameWithHalfItsLettersWrongIsNotSimilar) {
  EXPECT_EQ(similarTo("on", {"off", "in", "o"}), "");
  EXPECT_EQ(similarTo("a", {"b"}), "");
  EXPECT_EQ(similarTo("stop", {"step", "slow"}), "step");
  EXPECT_EQ(similarTo("stop", {"slow"}), "");
}

TEST(SimilarNameTest, NameInAnotherCaseIsSimilar) {
  EXPECT_EQ(similarTo("gateway.LIMIT", {"Gateway.Limit"}), "Gateway.Limit");
  EXPECT_EQ(similarTo("ON", {"on"}), "on");
}

TEST(SimilarNameTest, FewestTypingErrorsWin) {
  EXPECT_EQ(similarTo("Limit", {"Lamid", "Limits", "Limib"}), "Limits");
}

TEST(SimilarNameTest, NothingIsSimilarToAnEmptyList) {
  EXPECT_EQ(similarTo("Limit", {}), "");
}

}  // namespace
