// SPDX-License-Identifier: MIT
// The lookup of the cached instance names of a configuration object.
#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/pass_functions.h"
#include "tests/support/recording_test.h"

namespace {

struct Visit {
  int db;
  std::string name;
  void* userdata;
  c_pass_fn3 pass_fn3;
  c_pass_fn4 pass_fn4;
};

// The `arg` of a lookup: its visits so far, and what each visit does and returns.
struct Visitor {
  std::vector<Visit> visits;
  std::function<void(char* name)> action = [](char*) {};
  int result = 0;
};

int visit(int db, char* name, void* userdata, c_pass_fn3 pass_fn3, c_pass_fn4 pass_fn4, void* arg) {
  auto& visitor = *static_cast<Visitor*>(arg);
  visitor.visits.push_back({db, name, userdata, pass_fn3, pass_fn4});
  visitor.action(name);
  return visitor.result;
}

using Names = std::vector<std::string>;

class LookupTest : public RecordingTest {
 protected:
  LookupTest() { c_dbc_create(); }

  // The cache must not call the context.
  void TearDown() override {
    EXPECT_EQ(calls(), Calls());
    RecordingTest::TearDown();
  }

  static void add(const Names& names) {
    for (const std::string& name : names) c_dbc_add_userdata(5, name.c_str(), nullptr);
  }

  // Returns the names that a lookup of object 5 visits.
  Names walk() {
    visitor.visits.clear();
    c_dbc_lookup(5, visit, neverCalled3, neverCalled4, &visitor);
    Names names;
    for (const Visit& one : visitor.visits) names.push_back(one.name);
    return names;
  }

  Visitor visitor;
};

TEST_F(LookupTest, VisitsWithNumberNameAndUserdata) {
  int place = 0;
  c_dbc_add_userdata(-5, "A.1.", &place);
  c_dbc_lookup(-5, visit, nullptr, nullptr, &visitor);
  ASSERT_EQ(visitor.visits.size(), 1U);
  EXPECT_EQ(visitor.visits[0].db, -5);
  EXPECT_EQ(visitor.visits[0].name, "A.1.");
  EXPECT_EQ(visitor.visits[0].userdata, &place);
}

TEST_F(LookupTest, VisitsAnItemWithoutUserdata) {
  add({"a"});
  walk();
  ASSERT_EQ(visitor.visits.size(), 1U);
  EXPECT_EQ(visitor.visits[0].userdata, nullptr);
}

TEST_F(LookupTest, VisitsInAscendingOrderOfNames) {
  add({"b", "a", "ab"});
  EXPECT_EQ(walk(), Names({"a", "ab", "b"}));
}

TEST_F(LookupTest, NamesAreSortedByBytes) {
  add({"a", "Z", "", "\xff", "z", "A.10.", "A.2.", "A", "_", " "});
  EXPECT_EQ(walk(), Names({"", " ", "A", "A.10.", "A.2.", "Z", "_", "a", "z", "\xff"}));
}

TEST_F(LookupTest, AnyNameIsVisited) {
  const Names names = {"", "   ", ".", ".A", "A.", "A..B", "A.B", "A.B ", "A.B\n"};
  add(names);
  Names sorted = names;
  std::sort(sorted.begin(), sorted.end());
  EXPECT_EQ(walk(), sorted);
}

TEST_F(LookupTest, LongNameIsNotTruncated) {
  add({std::string(5000, 'x')});
  EXPECT_EQ(walk(), Names({std::string(5000, 'x')}));
}

TEST_F(LookupTest, VisitsOnlyTheGivenObject) {
  add({"of five"});
  c_dbc_add_userdata(4, "of four", nullptr);
  c_dbc_add_userdata(6, "of six", nullptr);
  EXPECT_EQ(walk(), Names({"of five"}));
}

TEST_F(LookupTest, SecondLookupVisitsAllNames) {
  add({"a", "b"});
  walk();
  EXPECT_EQ(walk(), Names({"a", "b"}));
}

TEST_F(LookupTest, ResultsOfVisitsAreIgnored) {
  add({"a", "b", "c"});
  visitor.result = -1;
  EXPECT_EQ(walk(), Names({"a", "b", "c"}));
  visitor.result = 1;
  EXPECT_EQ(walk(), Names({"a", "b", "c"}));
}

TEST_F(LookupTest, PassesItsFunctionsToEachVisit) {
  add({"a", "b"});
  walk();
  ASSERT_EQ(visitor.visits.size(), 2U);
  for (const Visit& one : visitor.visits) {
    EXPECT_EQ(one.pass_fn3, neverCalled3);
    EXPECT_EQ(one.pass_fn4, neverCalled4);
  }
}

TEST_F(LookupTest, PassesNullFunctionsToTheVisit) {
  add({"a"});
  c_dbc_lookup(5, visit, nullptr, nullptr, &visitor);
  ASSERT_EQ(visitor.visits.size(), 1U);
  EXPECT_EQ(visitor.visits[0].pass_fn3, nullptr);
  EXPECT_EQ(visitor.visits[0].pass_fn4, nullptr);
}

TEST_F(LookupTest, PassesEachFunctionSeparately) {
  add({"a"});
  c_dbc_lookup(5, visit, neverCalled3, nullptr, &visitor);
  c_dbc_lookup(5, visit, nullptr, neverCalled4, &visitor);
  ASSERT_EQ(visitor.visits.size(), 2U);
  EXPECT_EQ(visitor.visits[0].pass_fn3, neverCalled3);
  EXPECT_EQ(visitor.visits[0].pass_fn4, nullptr);
  EXPECT_EQ(visitor.visits[1].pass_fn3, nullptr);
  EXPECT_EQ(visitor.visits[1].pass_fn4, neverCalled4);
}

int visits_without_argument = 0;

int visitWithoutArgument(int /*db*/, char* /*name*/, void* /*userdata*/, c_pass_fn3 /*pass_fn3*/,
                         c_pass_fn4 /*pass_fn4*/, void* arg) {
  if (arg == nullptr) ++visits_without_argument;
  return 0;
}

TEST_F(LookupTest, PassesANullArgumentToTheVisit) {
  visits_without_argument = 0;
  add({"a", "b"});
  c_dbc_lookup(5, visitWithoutArgument, nullptr, nullptr, nullptr);
  EXPECT_EQ(visits_without_argument, 2);
}

TEST_F(LookupTest, NameAddedByAVisitIsVisitedInTheNextLookup) {
  add({"a", "b"});
  visitor.action = [](char*) { add({"ab", "c"}); };
  EXPECT_EQ(walk(), Names({"a", "b"}));
  EXPECT_EQ(walk(), Names({"a", "ab", "b", "c"}));
}

TEST_F(LookupTest, VisitMayReleaseItsOwnName) {
  add({"a", "b", "c"});
  visitor.action = [](char* name) { c_dbc_db_release(5, name); };
  EXPECT_EQ(walk(), Names({"a", "b", "c"}));
  EXPECT_EQ(walk(), Names());
}

TEST_F(LookupTest, NameIsValidAfterItsRelease) {
  const std::string name(100, 'x');
  std::string after;
  add({name});
  visitor.action = [&after](char* given) {
    c_dbc_db_release(5, given);
    after = given;
  };
  walk();
  EXPECT_EQ(after, name);
}

TEST_F(LookupTest, NameReleasedAndAddedAgainByItsVisitIsVisitedOnce) {
  add({"a", "b"});
  visitor.action = [](char* name) {
    c_dbc_db_release(5, name);
    add({name});
  };
  EXPECT_EQ(walk(), Names({"a", "b"}));
  EXPECT_EQ(walk(), Names({"a", "b"}));
}

TEST_F(LookupTest, UserdataIsReadJustBeforeItsVisit) {
  int place = 0;
  add({"a", "b"});
  visitor.action = [&place](char*) { c_dbc_add_userdata(5, "b", &place); };
  walk();
  ASSERT_EQ(visitor.visits.size(), 2U);
  EXPECT_EQ(visitor.visits[1].userdata, &place);
}

TEST_F(LookupTest, VisitMayWriteIntoTheName) {
  add({"a", "b"});
  visitor.action = [](char* name) { name[0] = 'X'; };
  EXPECT_EQ(walk(), Names({"a", "b"}));
  EXPECT_EQ(walk(), Names({"a", "b"}));
}

TEST_F(LookupTest, VisitMayStartAnotherLookup) {
  add({"a", "b"});
  Visitor inner;
  visitor.action = [&inner](char*) { c_dbc_lookup(5, visit, nullptr, nullptr, &inner); };
  EXPECT_EQ(walk(), Names({"a", "b"}));
  EXPECT_EQ(inner.visits.size(), 4U);
}

TEST_F(LookupTest, VisitMayReleaseAnotherObject) {
  add({"a", "b"});
  c_dbc_add_userdata(6, "other", nullptr);
  visitor.action = [](char*) { c_dbc_db_release_all(6); };
  EXPECT_EQ(walk(), Names({"a", "b"}));
}

TEST_F(LookupTest, NullVisitCallsNothing) {
  add({"a"});
  c_dbc_lookup(5, nullptr, neverCalled3, neverCalled4, &visitor);
  EXPECT_TRUE(visitor.visits.empty());
}

TEST_F(LookupTest, NamesThatWereOnlyReadAreNotVisited) {
  add({"b"});
  c_dbc_get_userdata(5, "a");
  c_dbc_get_userdata(5, "c");
  EXPECT_EQ(walk(), Names({"b"}));
}

TEST_F(LookupTest, TableOfUnknownNamesVisitsNothing) {
  add({"a"});
  c_dbc_db_release(5, "a");
  c_dbc_get_userdata(5, "a");
  c_dbc_get_userdata(5, "b");
  EXPECT_EQ(walk(), Names());
}

TEST_F(LookupTest, NameThatWasReadBeforeItWasAddedIsVisited) {
  add({"b"});
  c_dbc_get_userdata(5, "a");
  add({"a"});
  EXPECT_EQ(walk(), Names({"a", "b"}));
}

TEST_F(LookupTest, ReleasedNameIsNotVisited) {
  add({"a", "b"});
  c_dbc_db_release(5, "a");
  EXPECT_EQ(walk(), Names({"b"}));
}

TEST_F(LookupTest, ReleasedTableVisitsNothing) {
  add({"a", "b"});
  c_dbc_db_release_all(5);
  EXPECT_EQ(walk(), Names());
}

TEST_F(LookupTest, UnknownObjectVisitsNothing) {
  EXPECT_EQ(walk(), Names());
}

TEST_F(LookupTest, UnknownObjectMayBeFilledAfterALookup) {
  walk();
  add({"a"});
  EXPECT_EQ(walk(), Names({"a"}));
}

TEST_F(LookupTest, WithoutACacheVisitsNothing) {
  add({"a"});
  c_dbc_db_destory();
  EXPECT_EQ(walk(), Names());
}

TEST_F(LookupTest, DoesNotCreateTheCache) {
  c_dbc_db_destory();
  walk();
  add({"a"});
  EXPECT_EQ(c_dbc_get_userdata(5, "a"), nullptr);
  EXPECT_EQ(walk(), Names());
}

TEST_F(LookupTest, AcceptsTheSameVisitAsTheInstanceLookup) {
  int place = 0;
  cfm.instances[5] = {"A.1."};
  c_dbc_add_userdata(5, "A.1.", &place);
  c_cfm_lookup_instance(5, visit, nullptr, nullptr, &visitor);
  calls();
  c_dbc_lookup(5, visit, nullptr, nullptr, &visitor);
  ASSERT_EQ(visitor.visits.size(), 2U);
  EXPECT_EQ(visitor.visits[0].name, visitor.visits[1].name);
  EXPECT_EQ(visitor.visits[0].userdata, nullptr);
  EXPECT_EQ(visitor.visits[1].userdata, &place);
}

}  // namespace
