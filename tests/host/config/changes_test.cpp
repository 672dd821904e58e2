// SPDX-License-Identifier: MIT
#include "host/config/changes.h"

#include <map>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace host {
namespace {

using Instances = std::map<std::string, bool>;
using ChangedLeaves = std::map<std::string, std::vector<bool>>;

constexpr bool kWasSaved = true;
constexpr bool kWasNotSaved = false;

const Instance kA{"A.", {"value of X", "value of Y"}};
const Instance kB{"A.b.", {"value of X"}};
const Leaf kX{"X", findValueType("str"), "", false, 0};
const Leaf kY{"Y", findValueType("str"), "", false, 1};

TEST(ChangesTest, NewChangesAreEmpty) {
  EXPECT_TRUE(Changes().empty());
}

TEST(ChangesTest, AnyChangeIsNotEmpty) {
  Changes attribute, leaf, added, deleted;
  attribute.attributeChanged("A.");
  leaf.leafChanged(kA, kY);
  added.instanceAdded(kB);
  deleted.instanceDeleted(kB);
  for (Changes* changes : {&attribute, &leaf, &added, &deleted}) {
    EXPECT_FALSE(changes->empty());
    changes->clear();
    EXPECT_TRUE(changes->empty());
  }
}

TEST(ChangesTest, RepeatedChangeIsRecordedOnce) {
  Changes changes;
  for (int i = 0; i < 2; i++) {
    changes.attributeChanged("A.");
    changes.leafChanged(kA, kY);
  }
  EXPECT_EQ(changes.attributes(), std::set<std::string>{"A."});
  EXPECT_EQ(changes.leaves(), (ChangedLeaves{{"A.", {false, true}}}));
}

TEST(ChangesTest, LeafOfAnAddedInstanceIsRecorded) {
  Changes changes;
  changes.instanceAdded(kB);
  changes.leafChanged(kB, kX);
  EXPECT_EQ(changes.instances(), (Instances{{"A.b.", kWasNotSaved}}));
  EXPECT_EQ(changes.leaves(), (ChangedLeaves{{"A.b.", {true}}}));
}

TEST(ChangesTest, LeafOfADeletedInstanceIsDropped) {
  Changes changes;
  changes.leafChanged(kB, kX);
  changes.instanceDeleted(kB);
  EXPECT_EQ(changes.instances(), (Instances{{"A.b.", kWasSaved}}));
  EXPECT_TRUE(changes.leaves().empty());
}

TEST(ChangesTest, AddedAndDeletedInstanceIsNotRecorded) {
  Changes changes;
  changes.instanceAdded(kB);
  changes.leafChanged(kB, kX);
  changes.instanceDeleted(kB);
  EXPECT_TRUE(changes.empty());
}

TEST(ChangesTest, SavedInstanceStaysRecordedWhenReadded) {
  Changes changes;
  changes.instanceDeleted(kB);
  changes.instanceAdded(kB);
  EXPECT_EQ(changes.instances(), (Instances{{"A.b.", kWasSaved}}));
  changes.instanceDeleted(kB);
  EXPECT_EQ(changes.instances(), (Instances{{"A.b.", kWasSaved}}));
}

}  // namespace

}  // namespace host
