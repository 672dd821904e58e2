// SPDX-License-Identifier: MIT
#include "host/config/changes.h"

#include <map>
#include <set>
#include <string>

#include <gtest/gtest.h>

namespace host {
namespace {

using Instances = std::map<std::string, bool>;
using Leaves = std::map<std::string, std::set<std::string>>;

constexpr bool kWasSaved = true;
constexpr bool kWasNotSaved = false;

TEST(ChangesTest, AtFirstThereAreNone) {
  EXPECT_TRUE(Changes().empty());
}

TEST(ChangesTest, EachKindOfChangeCounts) {
  Changes attribute, leaf, added, deleted;
  attribute.attributeChanged("A.");
  leaf.leafChanged("A.", "X");
  added.instanceAdded("A.b.");
  deleted.instanceDeleted("A.b.");
  for (Changes* changes : {&attribute, &leaf, &added, &deleted}) {
    EXPECT_FALSE(changes->empty());
    changes->clear();
    EXPECT_TRUE(changes->empty());
  }
}

TEST(ChangesTest, NameIsKeptOnce) {
  Changes changes;
  for (int i = 0; i < 2; i++) {
    changes.attributeChanged("A.");
    changes.leafChanged("A.", "X");
  }
  EXPECT_EQ(changes.attributes(), std::set<std::string>{"A."});
  EXPECT_EQ(changes.leaves(), (Leaves{{"A.", {"X"}}}));
}

TEST(ChangesTest, LeafOfAnAddedInstanceIsPartOfIt) {
  Changes changes;
  changes.instanceAdded("A.b.");
  changes.leafChanged("A.b.", "X");
  EXPECT_EQ(changes.instances(), (Instances{{"A.b.", kWasNotSaved}}));
  EXPECT_TRUE(changes.leaves().empty());
}

TEST(ChangesTest, LeafOfADeletedInstanceIsForgotten) {
  Changes changes;
  changes.leafChanged("A.b.", "X");
  changes.instanceDeleted("A.b.");
  EXPECT_EQ(changes.instances(), (Instances{{"A.b.", kWasSaved}}));
  EXPECT_TRUE(changes.leaves().empty());
}

TEST(ChangesTest, InstanceThatHasComeAndGoneLeavesNothing) {
  Changes changes;
  changes.instanceAdded("A.b.");
  changes.leafChanged("A.b.", "X");
  changes.instanceDeleted("A.b.");
  EXPECT_TRUE(changes.empty());
}

TEST(ChangesTest, InstanceThatWasSavedIsRememberedHoweverOftenItComesAndGoes) {
  Changes changes;
  changes.instanceDeleted("A.b.");
  changes.instanceAdded("A.b.");
  EXPECT_EQ(changes.instances(), (Instances{{"A.b.", kWasSaved}}));
  changes.instanceDeleted("A.b.");
  EXPECT_EQ(changes.instances(), (Instances{{"A.b.", kWasSaved}}));
}

}  // namespace

}  // namespace host
