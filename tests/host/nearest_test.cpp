// SPDX-License-Identifier: MIT
#include "host/strict/nearest.h"

#include <initializer_list>
#include <string>

#include <gtest/gtest.h>

namespace {

std::string nearestTo(const std::string& name, std::initializer_list<const char*> known) {
  Nearest nearest(name);
  for (const char* one : known) nearest.consider(one);
  return nearest.name();
}

TEST(NearestTest, UpToTwoMistakesAreNear) {
  EXPECT_EQ(nearestTo("Limit", {"Limits"}), "Limits");
  EXPECT_EQ(nearestTo("Limit", {"Limi"}), "Limi");
  EXPECT_EQ(nearestTo("Limit", {"Lamet"}), "Lamet");
  EXPECT_EQ(nearestTo("Limit", {"Lamits"}), "Lamits");
}

TEST(NearestTest, ThreeMistakesAreAnotherName) {
  EXPECT_EQ(nearestTo("Limit", {"Lamess"}), "");
  EXPECT_EQ(nearestTo("Limit", {"Limit123"}), "");
}

TEST(NearestTest, HalfOfANameIsNoMistake) {
  EXPECT_EQ(nearestTo("on", {"off", "in", "o"}), "");
  EXPECT_EQ(nearestTo("a", {"b"}), "");
  EXPECT_EQ(nearestTo("stop", {"step", "slow"}), "step");
  EXPECT_EQ(nearestTo("stop", {"slow"}), "");
}

TEST(NearestTest, AnyNumberOfLettersInTheWrongCaseIsNear) {
  EXPECT_EQ(nearestTo("gateway.LIMIT", {"Gateway.Limit"}), "Gateway.Limit");
  EXPECT_EQ(nearestTo("ON", {"on"}), "on");
}

TEST(NearestTest, FewerMistakesWin) {
  EXPECT_EQ(nearestTo("Limit", {"Lamid", "Limits", "Limib"}), "Limits");
}

TEST(NearestTest, NothingKnownIsNothingNear) {
  EXPECT_EQ(nearestTo("Limit", {}), "");
}

}  // namespace
