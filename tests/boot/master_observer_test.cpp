// SPDX-License-Identifier: MIT
// The master observer: its registration and its operations.
#include <climits>
#include <string>

#include "boot/boot_context.h"
#include "tests/support/recording_test.h"

namespace {

// The calls of the functions in the tables below.
CallLog callbacks;

int load() {
  return callbacks.record("load");
}

int start() {
  return callbacks.record("start");
}

int config(const char* name, int arg) {
  return callbacks.record("config", name, arg);
}

int run() {
  return callbacks.record("run");
}

int unconfig(const char* name, int arg) {
  return callbacks.record("unconfig", name, arg);
}

int unload() {
  return callbacks.record("unload");
}

int depend(const char* name) {
  return callbacks.record("depend", name);
}

int otherLoad() {
  return callbacks.record("otherLoad");
}

class MasterObserverTest : public RecordingTest {
 protected:
  MasterObserverTest() { callbacks = {}; }

  // Registers `callback_table` and returns the observer that the context received.
  IBootContext& registered(ModuleCallbacks* callback_table) {
    c_context_regist_master_observer(callback_table);
    calls();
    return *context.master_observers.at(0);
  }

  // Calls every operation and returns the results in order.
  static std::string results(IBootContext& observer) {
    std::string text;
    for (const int result : {observer.onLoad(), observer.onStart(), observer.onConfig("name", 1),
                             observer.onRun(), observer.onUnconfig("name", 2), observer.onStop(),
                             observer.onUnload(), observer.recvDependence("name")}) {
      text += std::to_string(result) + ' ';
    }
    return text;
  }

  ModuleCallbacks table = {load, start, config, run, unconfig, unload, depend};
  ModuleCallbacks empty = {};
};

TEST_F(MasterObserverTest, IsRegisteredWithTheContext) {
  EXPECT_EQ(c_context_regist_master_observer(&table), 0);
  EXPECT_EQ(calls(), Calls({"context.registMasterObserver(object)"}));
}

TEST_F(MasterObserverTest, RegistrationReturnsTheResultOfTheContext) {
  log.results["context.registMasterObserver"] = -12;
  EXPECT_EQ(c_context_regist_master_observer(&table), -12);
}

TEST_F(MasterObserverTest, RegistrationCallsNoEntry) {
  c_context_regist_master_observer(&table);
  EXPECT_EQ(callbacks.take(), Calls());
}

TEST_F(MasterObserverTest, SecondRegistrationIsIgnored) {
  ModuleCallbacks other = {};
  other.onLoad = otherLoad;
  IBootContext& observer = registered(&table);
  EXPECT_NE(c_context_regist_master_observer(&other), 0);
  EXPECT_EQ(calls(), Calls());
  observer.onLoad();
  EXPECT_EQ(callbacks.take(), Calls({"load()"}));
}

TEST_F(MasterObserverTest, SecondRegistrationOfTheSameTableIsIgnored) {
  registered(&table);
  EXPECT_NE(c_context_regist_master_observer(&table), 0);
  EXPECT_EQ(calls(), Calls());
}

TEST_F(MasterObserverTest, FirstRegistrationIsKeptEvenIfItsTableIsNull) {
  IBootContext& observer = registered(nullptr);
  EXPECT_NE(c_context_regist_master_observer(&table), 0);
  EXPECT_EQ(observer.onLoad(), -1022);
}

TEST_F(MasterObserverTest, FirstRegistrationIsKeptEvenIfTheContextRejectedIt) {
  log.results["context.registMasterObserver"] = -12;
  registered(&table);
  EXPECT_NE(c_context_regist_master_observer(&table), 0);
  EXPECT_EQ(context.master_observers.size(), 1U);
}

TEST_F(MasterObserverTest, ObserverAndTableAreStoredBeforeTheContextIsCalled) {
  int nested = 0;
  log.on_call = [this, &nested](const std::string&) {
    context.master_observers.back()->onStart();
    nested = c_context_regist_master_observer(&empty);
  };
  c_context_regist_master_observer(&table);
  EXPECT_NE(nested, 0);
  EXPECT_EQ(callbacks.take(), Calls({"start()"}));
}

TEST_F(MasterObserverTest, WithoutAContextIsStoredButNotRegistered) {
  releaseContext(nullptr);
  proxy.instance = nullptr;
  log.results["context.registMasterObserver"] = -12;
  EXPECT_EQ(c_context_regist_master_observer(&table), 0);

  proxy.instance = &context;
  EXPECT_NE(c_context_regist_master_observer(&table), 0);
  EXPECT_TRUE(context.master_observers.empty());
}

TEST_F(MasterObserverTest, IsRegisteredAgainAfterTheTeardown) {
  ModuleCallbacks other = {};
  other.onLoad = otherLoad;
  c_context_regist_master_observer(&table);
  c_context_deinit();
  EXPECT_EQ(c_context_regist_master_observer(&other), 0);
  ASSERT_EQ(context.master_observers.size(), 2U);
  context.master_observers[1]->onLoad();
  EXPECT_EQ(callbacks.take(), Calls({"otherLoad()"}));
}

TEST_F(MasterObserverTest, EachOperationCallsItsEntry) {
  results(registered(&table));
  EXPECT_EQ(callbacks.take(), Calls({"load()", "start()", "config('name', 1)", "run()", "unconfig('name', 2)",
                                     "unload()", "depend('name')"}));
}

TEST_F(MasterObserverTest, EachOperationReturnsTheResultOfItsEntryWithoutADiagnostic) {
  callbacks.results = {{"load", -1},     {"start", -2},  {"config", -3}, {"run", -4},
                       {"unconfig", -5}, {"unload", -6}, {"depend", 7}};
  EXPECT_EQ(results(registered(&table)), "-1 -2 -3 -4 -5 0 -6 7 ");
  EXPECT_EQ(calls(), Calls());
}

TEST_F(MasterObserverTest, NullEntriesSucceed) {
  EXPECT_EQ(results(registered(&empty)), "0 0 0 0 0 0 0 0 ");
  EXPECT_EQ(calls(), Calls());
}

TEST_F(MasterObserverTest, NullTableFailsWithoutADiagnostic) {
  EXPECT_EQ(results(registered(nullptr)), "-1022 -1022 -1022 -1022 -1022 0 -1022 -1022 ");
  EXPECT_EQ(calls(), Calls());
}

TEST_F(MasterObserverTest, EachEntryMayBeTheOnlyOne) {
  struct Row {
    ModuleCallbacks table;
    Calls called;
  };
  const Row rows[] = {
      {{load, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr}, {"load()"}},
      {{nullptr, start, nullptr, nullptr, nullptr, nullptr, nullptr}, {"start()"}},
      {{nullptr, nullptr, nullptr, run, nullptr, nullptr, nullptr}, {"run()"}},
      {{nullptr, nullptr, nullptr, nullptr, nullptr, unload, nullptr}, {"unload()"}},
      {{nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, depend}, {"depend('name')"}},
  };
  IBootContext& observer = registered(&table);
  for (const Row& row : rows) {
    SCOPED_TRACE(row.called.front());
    table = row.table;
    EXPECT_EQ(results(observer), "0 0 0 0 0 0 0 0 ");
    EXPECT_EQ(callbacks.take(), row.called);
  }
}

TEST_F(MasterObserverTest, UnconfigIsNotCalledIfConfigIsMissing) {
  callbacks.results["unconfig"] = -5;
  empty.onUnconfig = unconfig;
  EXPECT_EQ(registered(&empty).onUnconfig("master", 1), 0);
  EXPECT_EQ(callbacks.take(), Calls());
}

TEST_F(MasterObserverTest, UnconfigIsCalledIfConfigIsSet) {
  callbacks.results["unconfig"] = -5;
  empty.onConfig = config;
  empty.onUnconfig = unconfig;
  EXPECT_EQ(registered(&empty).onUnconfig("master", 1), -5);
  EXPECT_EQ(callbacks.take(), Calls({"unconfig('master', 1)"}));
}

TEST_F(MasterObserverTest, ConfigNeedsNoUnconfig) {
  empty.onConfig = config;
  EXPECT_EQ(registered(&empty).onConfig("master", 1), 0);
  EXPECT_EQ(callbacks.take(), Calls({"config('master', 1)"}));
}

TEST_F(MasterObserverTest, ConfigurationNamesReachTheEntries) {
  IBootContext& observer = registered(&table);
  for (const char* name : {"master", "Master", "cfmd", "", " "}) {
    SCOPED_TRACE(::testing::PrintToString(name));
    EXPECT_EQ(observer.onConfig(name, INT_MIN), 0);
    EXPECT_EQ(observer.onUnconfig(name, INT_MAX), 0);
    EXPECT_EQ(callbacks.take(), Calls({"config('" + std::string(name) + "', -2147483648)",
                                       "unconfig('" + std::string(name) + "', 2147483647)"}));
  }
}

TEST_F(MasterObserverTest, EntriesReceiveNamesUpToAnEmbeddedNul) {
  const std::string name("A\0B", 3);
  IBootContext& observer = registered(&table);
  observer.onConfig(name, 1);
  observer.onUnconfig(name, 2);
  observer.recvDependence(name);
  EXPECT_EQ(callbacks.take(), Calls({"config('A', 1)", "unconfig('A', 2)", "depend('A')"}));
}

TEST_F(MasterObserverTest, TableRemainsOwnedByTheCaller) {
  IBootContext& observer = registered(&table);
  table.onLoad = otherLoad;
  observer.onLoad();
  EXPECT_EQ(callbacks.take(), Calls({"otherLoad()"}));
}

using NotifyDependsTest = RecordingTest;

TEST_F(NotifyDependsTest, ReachesTheContext) {
  c_context_notify_depends("link");
  EXPECT_EQ(calls(), Calls({"context.notifyDepends('link')"}));
}

TEST_F(NotifyDependsTest, NamesArePassedUnchanged) {
  for (const std::string& name :
       {std::string(), std::string("."), std::string("   "), std::string("A."), std::string(".A"),
        std::string("A..B"), std::string("A \n"), std::string("%s"), std::string(5000, 'x')}) {
    SCOPED_TRACE(::testing::PrintToString(name));
    c_context_notify_depends(name.c_str());
    EXPECT_EQ(calls(), Calls({"context.notifyDepends('" + name + "')"}));
  }
}

TEST_F(NotifyDependsTest, IgnoresTheResultOfTheContext) {
  log.results["context.notifyDepends"] = -1;
  c_context_notify_depends("link");
  EXPECT_EQ(calls(), Calls({"context.notifyDepends('link')"}));
}

TEST_F(NotifyDependsTest, WithoutAContextDoesNothing) {
  releaseContext(nullptr);
  proxy.instance = nullptr;
  calls();
  c_context_notify_depends("x");
  EXPECT_EQ(calls(), Calls({"getInstance(null)"}));
}

}  // namespace
