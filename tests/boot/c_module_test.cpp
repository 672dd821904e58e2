// SPDX-License-Identifier: MIT
// Modules written in C.
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "boot/module.h"
#include "tests/support/recording_test.h"

namespace {

// The calls of the table's functions. Global, because the functions have no user pointer.
Calls g_entered;
int g_answer = 0;

int enter(const std::string& call) {
  g_entered.push_back(call);
  return g_answer;
}

int load() {
  return enter("onLoad");
}

int start() {
  return enter("onStart");
}

int config(const char* name, int arg) {
  return enter(std::string("onConfig ") + name + ' ' + std::to_string(arg));
}

int run() {
  return enter("onRun");
}

int unconfig(const char* name, int arg) {
  return enter(std::string("onUnconfig ") + name + ' ' + std::to_string(arg));
}

int unload() {
  return enter("onUnload");
}

int dependence(const char* name) {
  return enter(std::string("recvDependence ") + name);
}

// A step of the lifecycle: the operation that the framework calls, and the resulting call in the table.
struct Step {
  const char* name;
  std::function<int(IModule& module)> take;
  const char* entered;
};

void PrintTo(const Step& step, std::ostream* out) {
  *out << step.name;
}

const std::vector<Step> kSteps = {
    {"onLoad", [](IModule& module) { return module.onLoad(); }, "onLoad"},
    {"onStart", [](IModule& module) { return module.onStart(); }, "onStart"},
    {"onConfig", [](IModule& module) { return module.onConfig("cfmd", -7); }, "onConfig cfmd -7"},
    {"onRun", [](IModule& module) { return module.onRun(); }, "onRun"},
    {"onUnconfig", [](IModule& module) { return module.onUnconfig("master", 8); }, "onUnconfig master 8"},
    {"onUnload", [](IModule& module) { return module.onUnload(); }, "onUnload"},
    {"recvDependence", [](IModule& module) { return module.recvDependence("net"); }, "recvDependence net"},
};

class CModuleTest : public RecordingTest {
 protected:
  CModuleTest() {
    g_entered.clear();
    g_answer = 0;
  }

  ~CModuleTest() override { c_module_unregist(handle_); }

  IModule& regist(ModuleCallbacks* table) {
    c_module_unregist(handle_);
    handle_ = c_module_regist(table);
    return *static_cast<IModule*>(handle_);
  }

  ModuleCallbacks full = {load, start, config, run, unconfig, unload, dependence};
  ModuleCallbacks empty = {};

 private:
  void* handle_ = nullptr;
};

class StepTest : public CModuleTest, public testing::WithParamInterface<Step> {};

TEST_P(StepTest, CallsItsEntryAndReturnsItsResult) {
  g_answer = -55;
  EXPECT_EQ(GetParam().take(regist(&full)), -55);
  EXPECT_EQ(g_entered, Calls({GetParam().entered}));
  EXPECT_EQ(calls(), Calls()) << "A result of the entry's own is not reported.";
}

TEST_P(StepTest, WithoutAnEntrySucceedsWithoutADiagnostic) {
  EXPECT_EQ(GetParam().take(regist(&empty)), 0);
  EXPECT_EQ(calls(), Calls());
}

TEST_P(StepTest, WithoutATableFailsWithADiagnostic) {
  EXPECT_EQ(GetParam().take(regist(nullptr)), -1022);
  EXPECT_EQ(calls(), Calls({std::string("context.debugOut('cpp2c', '") + GetParam().name + " not init!')"}));
}

TEST_P(StepTest, WithoutATableAndAContextFailsSilently) {
  releaseContext(nullptr);
  proxy.instance = nullptr;
  EXPECT_EQ(GetParam().take(regist(nullptr)), -1022);
  EXPECT_TRUE(context.diagnostics.empty());
}

TEST_P(StepTest, EntrySetAfterTheRegistrationIsCalled) {
  IModule& module = regist(&empty);
  empty = full;
  GetParam().take(module);
  EXPECT_EQ(g_entered, Calls({GetParam().entered}));
}

INSTANTIATE_TEST_SUITE_P(Lifecycle, StepTest, testing::ValuesIn(kSteps),
                         [](const auto& step) { return std::string(step.param.name); });

TEST_F(CModuleTest, StopStepSucceedsWhateverTheTable) {
  g_answer = -55;
  EXPECT_EQ(regist(&full).onStop(), 0);
  EXPECT_EQ(regist(&empty).onStop(), 0);
  EXPECT_EQ(regist(nullptr).onStop(), 0);
  EXPECT_EQ(g_entered, Calls());
  EXPECT_EQ(calls(), Calls());
}

TEST_F(CModuleTest, ConfigurationNamesReachTheEntry) {
  IModule& module = regist(&full);
  module.onConfig("Master", 5);
  module.onConfig("master", 5);
  module.onUnconfig("", 0);
  EXPECT_EQ(g_entered, Calls({"onConfig Master 5", "onConfig master 5", "onUnconfig  0"}));
}

TEST_F(CModuleTest, EntryReceivesNamesUpToAnEmbeddedNul) {
  IModule& module = regist(&full);
  module.onConfig(std::string("cf\0md", 5), 1);
  module.onUnconfig(std::string("mas\0ter", 7), 2);
  module.recvDependence(std::string("n\0et", 4));
  EXPECT_EQ(g_entered, Calls({"onConfig cf 1", "onUnconfig mas 2", "recvDependence n"}));
}

TEST_F(CModuleTest, NamesMayBeLong) {
  const std::string name(50000, 'n');
  regist(&full).recvDependence(name);
  EXPECT_EQ(g_entered, Calls({"recvDependence " + name}));
}

TEST_F(CModuleTest, RegistrationDoesNotReachTheContext) {
  releaseContext(nullptr);
  calls();
  regist(&full);
  EXPECT_EQ(calls(), Calls());
}

TEST_F(CModuleTest, EachRegistrationCreatesAModule) {
  void* first = c_module_regist(&full);
  void* second = c_module_regist(&full);
  EXPECT_NE(first, second);
  c_module_unregist(first);
  EXPECT_EQ(static_cast<IModule*>(second)->onRun(), 0);
  c_module_unregist(second);
}

TEST_F(CModuleTest, UnregistrationOfNullIsIgnored) {
  c_module_unregist(nullptr);
  EXPECT_EQ(calls(), Calls());
}

TEST_F(CModuleTest, UnregistrationCallsNoEntry) {
  void* module = c_module_regist(&full);
  c_module_unregist(module);
  EXPECT_EQ(g_entered, Calls());
}

class Derived : public IModule {
 public:
  explicit Derived(bool& destroyed) : destroyed_(destroyed) {}
  ~Derived() override { destroyed_ = true; }

 private:
  bool& destroyed_;
};

TEST_F(CModuleTest, UnregistrationCallsTheDestructorOfAnyModule) {
  bool destroyed = false;
  c_module_unregist(static_cast<IModule*>(new Derived(destroyed)));
  EXPECT_TRUE(destroyed);
}

}  // namespace
