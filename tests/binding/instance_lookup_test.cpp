// SPDX-License-Identifier: MIT
// The walk over the live instances of a configuration object.
#include <cstddef>
#include <functional>
#include <string>

#include "tests/support/pass_functions.h"
#include "tests/support/recording_test.h"

namespace {

// A walk's `arg`: where its visits go, and what they answer.
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

TEST_F(InstanceLookupTest, VisitsEveryInstanceAndHandsTheIteratorBack) {
  EXPECT_EQ(lookup(5), 0);
  EXPECT_EQ(calls(), kBothVisited);
}

TEST_F(InstanceLookupTest, VisitsTheFirstInstanceBeforeItAsksForMore) {
  cfm.instances[-9] = {"only"};
  lookup(-9);
  EXPECT_EQ(calls(), Calls({"context.getCfm()", "cfm.instanceIterator(-9)", "iterator.name()",
                            "visit(-9, 'only', null)", "iterator.next()", "cfm.releaseIterator(-9)"}));
}

TEST_F(InstanceLookupTest, VisitsInTheServicesOrder) {
  cfm.instances[5] = {"b", "a", "c"};
  std::string names;
  visitor.action = [&names](char* name) { names += name; };
  lookup(5);
  EXPECT_EQ(names, "bac");
}

TEST_F(InstanceLookupTest, ResultIsTheServicesWhenItTakesTheIteratorBack) {
  log.results["cfm.releaseIterator"] = -44;
  EXPECT_EQ(lookup(5), -44);
}

TEST_F(InstanceLookupTest, VisitsGoOnWhateverTheyAnswer) {
  visitor.result = -1;
  EXPECT_EQ(lookup(5), 0);
  EXPECT_EQ(calls(), kBothVisited);
}

TEST_F(InstanceLookupTest, PassesItsFunctionsThrough) {
  lookup(5);
  EXPECT_EQ(visitor.pass_fn3, neverCalled3);
  EXPECT_EQ(visitor.pass_fn4, neverCalled4);
}

TEST_F(InstanceLookupTest, PassesNullFunctionsThrough) {
  visitor.pass_fn3 = neverCalled3;
  visitor.pass_fn4 = neverCalled4;
  c_cfm_lookup_instance(5, visit, nullptr, nullptr, &visitor);
  EXPECT_EQ(visitor.pass_fn3, nullptr);
  EXPECT_EQ(visitor.pass_fn4, nullptr);
}

TEST_F(InstanceLookupTest, PassesEachFunctionThroughOnItsOwn) {
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

TEST_F(InstanceLookupTest, PassesANullArgumentThrough) {
  visits_without_argument = 0;
  c_cfm_lookup_instance(5, visitWithoutArgument, nullptr, nullptr, nullptr);
  EXPECT_EQ(visits_without_argument, 2);
}

TEST_F(InstanceLookupTest, UserdataIsNullThoughTheCacheHoldsSome) {
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

TEST_F(InstanceLookupTest, EveryKindOfNameReachesTheVisitUnchanged) {
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

TEST_F(InstanceLookupTest, NameWithANulReachesTheVisitCut) {
  cfm.instances[6] = {std::string("A\0B", 3)};
  lookup(6);
  EXPECT_EQ(calls().at(3), "visit(6, 'A', null)");
}

TEST_F(InstanceLookupTest, IteratorIsHeldDuringTheVisits) {
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

TEST_F(InstanceLookupTest, VisitMayStartAnotherWalk) {
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

TEST_F(InstanceLookupTest, NullVisitReachesNoService) {
  EXPECT_EQ(c_cfm_lookup_instance(5, nullptr, neverCalled3, neverCalled4, nullptr), 0);
  EXPECT_EQ(calls(), Calls());
}

TEST_F(InstanceLookupTest, WithoutAConfigurationServiceEndsQuietly) {
  context.missing.insert("getCfm");
  EXPECT_EQ(lookup(5), 0);
  EXPECT_EQ(calls(), Calls({"context.getCfm()"}));
}

TEST_F(InstanceLookupTest, WithoutAContextEndsQuietly) {
  releaseContext(nullptr);
  proxy.instance = nullptr;
  calls();
  EXPECT_EQ(lookup(5), 0);
  EXPECT_EQ(calls(), Calls({"getInstance(null)"}));
}

}  // namespace
