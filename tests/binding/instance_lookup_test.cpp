// SPDX-License-Identifier: MIT
// The lookup of the instances of a configuration object.
#include <cstddef>
#include <functional>
#include <string>

#include "tests/support/pass_functions.h"
#include "tests/support/recording_test.h"

namespace {

// The `arg` of a lookup: its visits, and the result of each.
struct Visitor {
  CallLog& log;
  int result = 0;
  std::function<void(char* name)> action = [](char*) {};
  c_pass_fn3 pass_fn3 = nullptr;
  c_pass_fn4 pass_fn4 = nullptr;
};

int visit(int id, char* name, void* userdata, c_pass_fn3 pass_fn3, c_pass_fn4 pass_fn4, void* arg) {
  auto& visitor = *static_cast<Visitor*>(arg);
  visitor.log.record("visit", id, name, userdata);
  visitor.pass_fn3 = pass_fn3;
  visitor.pass_fn4 = pass_fn4;
  visitor.action(name);
  return visitor.result;
}

class InstanceLookupTest : public RecordingTest {
 protected:
  InstanceLookupTest() { cfm.instances[5] = {"A.1.", "A.2."}; }

  int lookup(int id) { return c_cfm_lookup_instance(id, visit, neverCalled3, neverCalled4, &visitor); }

  Visitor visitor{log};
};

const Calls kBothVisited = {"context.getCfm()",       "cfm.instanceIterator(5)", "iterator.name()",
                            "visit(5, 'A.1.', null)", "iterator.next()",         "iterator.name()",
                            "visit(5, 'A.2.', null)", "iterator.next()",         "cfm.releaseIterator(5)"};

TEST_F(InstanceLookupTest, VisitsEachInstanceAndReleasesTheIterator) {
  EXPECT_EQ(lookup(5), 0);
  EXPECT_EQ(calls(), kBothVisited);
}

TEST_F(InstanceLookupTest, VisitsTheFirstInstanceBeforeItAdvances) {
  cfm.instances[-9] = {"only"};
  lookup(-9);
  EXPECT_EQ(calls(), Calls({"context.getCfm()", "cfm.instanceIterator(-9)", "iterator.name()",
                            "visit(-9, 'only', null)", "iterator.next()", "cfm.releaseIterator(-9)"}));
}

TEST_F(InstanceLookupTest, VisitsInTheOrderOfTheService) {
  cfm.instances[5] = {"b", "a", "c"};
  std::string names;
  visitor.action = [&names](char* name) { names += name; };
  lookup(5);
  EXPECT_EQ(names, "bac");
}

TEST_F(InstanceLookupTest, ReturnsTheResultOfReleasingTheIterator) {
  log.results["cfm.releaseIterator"] = -44;
  EXPECT_EQ(lookup(5), -44);
}

TEST_F(InstanceLookupTest, ResultsOfVisitsAreIgnored) {
  visitor.result = -1;
  EXPECT_EQ(lookup(5), 0);
  EXPECT_EQ(calls(), kBothVisited);
}

TEST_F(InstanceLookupTest, PassesItsFunctionsToTheVisit) {
  lookup(5);
  EXPECT_EQ(visitor.pass_fn3, neverCalled3);
  EXPECT_EQ(visitor.pass_fn4, neverCalled4);
}

TEST_F(InstanceLookupTest, PassesNullFunctionsToTheVisit) {
  visitor.pass_fn3 = neverCalled3;
  visitor.pass_fn4 = neverCalled4;
  c_cfm_lookup_instance(5, visit, nullptr, nullptr, &visitor);
  EXPECT_EQ(visitor.pass_fn3, nullptr);
  EXPECT_EQ(visitor.pass_fn4, nullptr);
}

TEST_F(InstanceLookupTest, PassesEachFunctionSeparately) {
  c_cfm_lookup_instance(5, visit, neverCalled3, nullptr, &visitor);
  EXPECT_EQ(visitor.pass_fn3, neverCalled3);
  EXPECT_EQ(visitor.pass_fn4, nullptr);
  c_cfm_lookup_instance(5, visit, nullptr, neverCalled4, &visitor);
  EXPECT_EQ(visitor.pass_fn3, nullptr);
  EXPECT_EQ(visitor.pass_fn4, neverCalled4);
}

int visits_without_argument = 0;

int visitWithoutArgument(int /*id*/, char* /*name*/, void* /*userdata*/, c_pass_fn3 /*pass_fn3*/,
                         c_pass_fn4 /*pass_fn4*/, void* arg) {
  if (arg == nullptr) ++visits_without_argument;
  return 0;
}

TEST_F(InstanceLookupTest, PassesANullArgumentToTheVisit) {
  visits_without_argument = 0;
  c_cfm_lookup_instance(5, visitWithoutArgument, nullptr, nullptr, nullptr);
  EXPECT_EQ(visits_without_argument, 2);
}

TEST_F(InstanceLookupTest, UserdataIsNullEvenIfTheCacheHasSome) {
  int place = 0;
  c_dbc_create();
  c_dbc_add_userdata(5, "A.1.", &place);
  lookup(5);
  EXPECT_EQ(calls(), kBothVisited);
  EXPECT_EQ(c_dbc_get_userdata(5, "A.1."), &place);
}

TEST_F(InstanceLookupTest, VisitMayWriteIntoTheName) {
  visitor.action = [](char* name) { name[0] = 'X'; };
  lookup(5);
  lookup(5);
  const Calls both = calls();
  EXPECT_EQ(Calls(both.begin(), both.begin() + static_cast<std::ptrdiff_t>(kBothVisited.size())),
            kBothVisited);
  EXPECT_EQ(both.size(), 2 * kBothVisited.size());
}

TEST_F(InstanceLookupTest, NamesReachTheVisitUnchanged) {
  for (const std::string& name :
       {std::string(), std::string("."), std::string("   "), std::string("A"), std::string("A."),
        std::string(".A"), std::string("A..B"), std::string("A.B \n"), std::string("%s%n"),
        std::string("\xff"), std::string(5000, 'x')}) {
    SCOPED_TRACE(::testing::PrintToString(name));
    cfm.instances[6] = {name};
    lookup(6);
    EXPECT_EQ(calls().at(3), "visit(6, '" + name + "', null)");
  }
}

TEST_F(InstanceLookupTest, VisitReceivesANameUpToAnEmbeddedNul) {
  cfm.instances[6] = {std::string("A\0B", 3)};
  lookup(6);
  EXPECT_EQ(calls().at(3), "visit(6, 'A', null)");
}

TEST_F(InstanceLookupTest, IteratorIsNotReleasedDuringTheVisits) {
  std::size_t held = 0;
  visitor.action = [this, &held](char*) { held += cfm.iterators_on_loan.size(); };
  lookup(5);
  EXPECT_EQ(held, 2U);
}

TEST_F(InstanceLookupTest, VisitMayReadAValue) {
  cfm.leaves["A.1.x"] = {"int", "7"};
  cfm.leaves["A.2.x"] = {"int", "8"};
  int sum = 0;
  visitor.action = [&sum](char* name) {
    int word = 0;
    c_cfm_get_value_v2(name, "", "x", "int", &word, sizeof word);
    sum += word;
  };
  lookup(5);
  EXPECT_EQ(sum, 15);
}

TEST_F(InstanceLookupTest, VisitMayStartAnotherLookup) {
  int inner = 0;
  Visitor counter{log};
  counter.action = [&inner](char*) { ++inner; };
  visitor.action = [&counter](char*) { c_cfm_lookup_instance(5, visit, nullptr, nullptr, &counter); };
  EXPECT_EQ(lookup(5), 0);
  EXPECT_EQ(inner, 4);
}

TEST_F(InstanceLookupTest, UnknownObjectHasNoInstances) {
  log.results["cfm.releaseIterator"] = -44;
  EXPECT_EQ(lookup(6), 0);
  EXPECT_EQ(calls(), Calls({"context.getCfm()", "cfm.instanceIterator(6)"}));
}

TEST_F(InstanceLookupTest, NullVisitDoesNotReachTheService) {
  EXPECT_EQ(c_cfm_lookup_instance(5, nullptr, neverCalled3, neverCalled4, nullptr), 0);
  EXPECT_EQ(calls(), Calls());
}

TEST_F(InstanceLookupTest, WithoutAConfigurationServiceDoesNothing) {
  context.missing.insert("getCfm");
  EXPECT_EQ(lookup(5), 0);
  EXPECT_EQ(calls(), Calls({"context.getCfm()"}));
}

TEST_F(InstanceLookupTest, WithoutAContextDoesNothing) {
  releaseContext(nullptr);
  proxy.instance = nullptr;
  calls();
  EXPECT_EQ(lookup(5), 0);
  EXPECT_EQ(calls(), Calls({"getInstance(null)"}));
}

}  // namespace
