// SPDX-License-Identifier: MIT
// The C functions call the context and its services at the right positions, and the adapters that they
// register can be called at their positions.
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "include_c"
#include "tests/binding/positions/positions.h"

namespace {

using Entered = std::vector<std::string>;

class FunctionPositionsTest : public testing::Test {
 protected:
  FunctionPositionsTest() { takeEntered(); }
  ~FunctionPositionsTest() override { c_context_deinit(); }
};

void ready(void* user, short events, int value) {
  *static_cast<std::string*>(user) = std::to_string(events) + ' ' + std::to_string(value);
}

int receive(void* user, const char* event, const char* data, const char* source) {
  *static_cast<std::string*>(user) = std::string(event) + ' ' + data + ' ' + source;
  return 11;
}

int observe(void* user, int id, const char* instance, int operation, const char* leaf) {
  *static_cast<std::string*>(user) =
      std::to_string(id) + ' ' + instance + ' ' + std::to_string(operation) + ' ' + leaf;
  return 12;
}

TEST_F(FunctionPositionsTest, LifecycleFunctionsCallTheContext) {
  EXPECT_EQ(c_context_init(1, 2), 30);
  EXPECT_EQ(c_context_load(), 40);
  EXPECT_EQ(c_debug_out("file", 2, "text"), 130);
  EXPECT_EQ(c_context_debug_switch(3), 140);
  EXPECT_EQ(takeEntered(), Entered({"IContext 3 (1, 2)", "IContext 4 ()", "IContext 13 (file, 2, text)",
                                    "IContext 14 (3)"}));
}

TEST_F(FunctionPositionsTest, ServiceFunctionsCallTheirServices) {
  EXPECT_EQ(c_loop_run(), 60);
  EXPECT_EQ(c_heartbeat_lock(), 90);
  EXPECT_EQ(c_heartbeat_unlock(), 100);
  EXPECT_EQ(c_cfm_save_config(), 190);
  EXPECT_EQ(takeEntered(), Entered({"IContext 10 ()", "ILoop 6 ()", "IContext 9 ()", "IHeartbeat 9 ()",
                                    "IContext 9 ()", "IHeartbeat 10 ()", "IContext 7 ()", "ICfm 19 (1)"}));
}

TEST_F(FunctionPositionsTest, WatchFunctionsCallTheLoop) {
  std::string seen;
  EXPECT_EQ(c_loop_add_fd(7, 1, ready, &seen), 30);
  EXPECT_EQ(enterLoopData3(lastAdapter(), -2, 7), 0);
  EXPECT_EQ(seen, "-2 7");
  c_loop_del_fd(7);
  EXPECT_EQ(takeEntered(),
            Entered({"IContext 10 ()", "ILoop 3 (7, 1, adapter)", "IContext 10 ()", "ILoop 4 (7)"}));
}

TEST_F(FunctionPositionsTest, EventFunctionsCallTheEventService) {
  std::string seen;
  c_event_regist_observer("link", receive, &seen);
  EXPECT_EQ(enterEventObserver3(lastAdapter(), "link", "up", "kernel"), 11);
  EXPECT_EQ(seen, "link up kernel");
  c_event_notify("link", "down");
  EXPECT_EQ(takeEntered(), Entered({"IContext 8 ()", "IEvent 3 (link, adapter)", "IContext 8 ()",
                                    "IEvent 5 (link, down, 0)"}));
}

TEST_F(FunctionPositionsTest, EventUnregistrationCallsTheEventService) {
  c_event_regist_observer("link", receive, nullptr);
  takeEntered();
  c_event_unregist_observer("link", receive);
  EXPECT_EQ(takeEntered(), Entered({"IContext 8 ()", "IEvent 4 (link, adapter)"}));
}

TEST_F(FunctionPositionsTest, ObserverFunctionsCallTheConfigurationService) {
  std::string seen;
  c_cfm_regist_observer(5, observe, &seen);
  EXPECT_EQ(enterCfmObserver3(lastAdapter(), 5, "A.1.", -1, "leaf"), 12);
  EXPECT_EQ(seen, "5 A.1. -1 leaf");
  c_cfm_unregist_observer(5, observe);
  EXPECT_EQ(takeEntered(),
            Entered({"IContext 7 ()", "ICfm 7 (5, adapter)", "ICfm 14 (5)", "ICfmIterator 6 ()",
                     "ICfmIterator 3 ()", "ICfm 15 ()", "IContext 7 ()", "ICfm 8 (5, adapter)"}));
}

TEST_F(FunctionPositionsTest, ValueFunctionsCallTheConfigurationService) {
  char buffer[8] = {};
  EXPECT_EQ(c_cfm_get_value("A.B", "str", buffer, sizeof buffer), 0);
  EXPECT_STREQ(buffer, "text");
  EXPECT_EQ(c_cfm_set_value("A.B", 3, "str", "new", 4), 170);
  EXPECT_EQ(takeEntered(), Entered({"IContext 7 ()", "ICfm 9 (A.B)", "ICfmNode 3 ()", "ICfmNode 6 ()",
                                    "ICfmNode 4 ()", "ICfm 10 ()", "IContext 7 ()", "ICfm 9 (A.B)",
                                    "ICfmNode 3 ()", "ICfm 10 ()", "ICfm 17 (A.B, new, 3)"}));
}

int tick() {
  return 13;
}

TEST_F(FunctionPositionsTest, TimerFunctionCallsTheContext) {
  EXPECT_EQ(c_context_set_timer(1, 2, tick), 200);
  EXPECT_EQ(enterTimer3(lastAdapter(), 7), 13);
  EXPECT_EQ(takeEntered(), Entered({"IContext 20 (1, 0, 2, adapter)"}));
}

TEST_F(FunctionPositionsTest, ProcessFunctionsCallTheContext) {
  char format[] = "%s";
  c_system_call("a");
  EXPECT_EQ(c_system_call2(format, "b"), 160);
  EXPECT_EQ(c_popen_call(format, "b"), 170);
  EXPECT_EQ(takeEntered(), Entered({"IContext 15 (a)", "IContext 16 (b)", "IContext 17 (b)"}));
}

TEST_F(FunctionPositionsTest, LogFunctionCallsTheLogService) {
  c_log_record("module", 3, "text");
  EXPECT_EQ(takeEntered(), Entered({"IContext 6 ()", "ILog 3 (module, 3, text)"}));
}

TEST_F(FunctionPositionsTest, AttributeFunctionsCallTheConfigurationService) {
  int out = 0;
  EXPECT_EQ(c_cfm_set_attr(1, 2), 50);
  EXPECT_EQ(c_cfm_get_attr(1, &out), 30);
  EXPECT_EQ(lastAdapter(), &out);
  EXPECT_EQ(takeEntered(),
            Entered({"IContext 7 ()", "ICfm 5 (1, 2)", "IContext 7 ()", "ICfm 3 (1, adapter)"}));
}

void answer(int id, const char* instance, const char* leaf, void* /*user*/, void* handle) {
  std::string text = std::to_string(id) + ' ' + instance + ' ' + leaf;
  c_cfm_data_provider_set(handle, "str", text.data());
}

TEST_F(FunctionPositionsTest, ProviderFunctionsCallTheConfigurationService) {
  c_cfm_data_provider_regist(5, answer, nullptr);
  EXPECT_EQ(enterDyncDataProvider1(lastAdapter(), 5, "A.1.", "leaf"), "5 A.1. leaf");
  EXPECT_EQ(takeEntered(), Entered({"IContext 7 ()", "ICfm 18 (5, adapter)"}));
}

int visit(int /*id*/, char* name, void* /*userdata*/, c_pass_fn3 /*pass_fn3*/, c_pass_fn4 /*pass_fn4*/,
          void* arg) {
  *static_cast<std::string*>(arg) += name;
  return 0;
}

TEST_F(FunctionPositionsTest, InstanceLookupCallsTheConfigurationService) {
  std::string seen;
  EXPECT_EQ(c_cfm_lookup_instance(5, visit, nullptr, nullptr, &seen), 0);
  EXPECT_EQ(seen, "A.1.");
  EXPECT_EQ(takeEntered(), Entered({"IContext 7 ()", "ICfm 14 (5)", "ICfmIterator 6 ()", "ICfmIterator 3 ()",
                                    "ICfm 15 ()"}));
}

// The last call of an entry of the table.
std::string g_module_entered;

int load() {
  g_module_entered = "load";
  return 21;
}

int start() {
  g_module_entered = "start";
  return 22;
}

int config(const char* name, int arg) {
  g_module_entered = std::string("config ") + name + ' ' + std::to_string(arg);
  return 23;
}

int run() {
  g_module_entered = "run";
  return 24;
}

int unconfig(const char* name, int arg) {
  g_module_entered = std::string("unconfig ") + name + ' ' + std::to_string(arg);
  return 25;
}

int unload() {
  g_module_entered = "unload";
  return 26;
}

int dependence(const char* name) {
  g_module_entered = std::string("dependence ") + name;
  return 27;
}

// Calls every operation of a participant that was created from the table of these entries.
void expectOperations(void* participant) {
  const std::vector<std::pair<int, std::string>> expected = {
      {21, "load"}, {22, "start"},  {23, "config name 9"},  {24, "run"}, {25, "unconfig name 9"},
      {0, ""},      {26, "unload"}, {27, "dependence name"}};
  for (int position = 3; position <= 10; ++position) {
    g_module_entered.clear();
    const auto& [result, entered] = expected[static_cast<std::size_t>(position - 3)];
    EXPECT_EQ(enterBootContext(participant, position), result) << position;
    EXPECT_EQ(g_module_entered, entered) << position;
  }
}

TEST_F(FunctionPositionsTest, ModuleOperationsHaveTheirPositions) {
  ModuleCallbacks table = {load, start, config, run, unconfig, unload, dependence};
  void* module = c_module_regist(&table);
  expectOperations(module);
  c_module_unregist(module);
}

TEST_F(FunctionPositionsTest, UnregistrationCallsTheDestructorOfTheModule) {
  c_module_unregist(newModule());
  EXPECT_EQ(takeEntered(), Entered({"IModule 1 ()"}));
}

TEST_F(FunctionPositionsTest, MasterObserverOperationsHaveTheirPositions) {
  ModuleCallbacks table = {load, start, config, run, unconfig, unload, dependence};
  EXPECT_EQ(c_context_regist_master_observer(&table), 190);
  expectOperations(lastAdapter());
  c_context_notify_depends("net");
  EXPECT_EQ(takeEntered(), Entered({"IContext 19 (adapter)", "IContext 24 (net)"}));
}

}  // namespace
