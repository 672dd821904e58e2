// SPDX-License-Identifier: MIT
// Start, loop and teardown.
#include <cstdint>
#include <string>

#include "tests/support/late_context_test.h"
#include "tests/support/recording_test.h"

namespace {

using StartTest = UnopenedContextTest;
using StartWithoutContextTest = LateContextTest;
using LifecycleTest = RecordingTest;

int noObserver(void* /*user*/, int /*id*/, const char* /*instance*/, int /*operation*/,
               const char* /*leaf*/) {
  return 0;
}

int noEvent(void* /*user*/, const char* /*event*/, const char* /*data*/, const char* /*source*/) {
  return 0;
}

void noEvents(void* /*user*/, short /*events*/, int /*value*/) {}

// Whether the cache exists: only then does it store a pointer.
bool cacheExists() {
  int place = 0;
  c_dbc_add_userdata(-1, "probe", &place);
  const bool kept = c_dbc_get_userdata(-1, "probe") == &place;
  c_dbc_db_release_all(-1);
  return kept;
}

TEST_F(StartTest, InitObtainsTheContextAndPassesTheArguments) {
  c_context_init(1, UINTPTR_MAX);
  EXPECT_EQ(calls(), Calls({"getInstance(null)", "context.init(1, " + std::to_string(UINTPTR_MAX) + ")"}));
}

TEST_F(StartTest, InitReturnsTheResultOfTheContext) {
  log.results["context.init"] = -5;
  EXPECT_EQ(c_context_init(0, 0), -5);
}

TEST_F(StartTest, InitCreatesTheCacheBetweenObtainingAndInitialisingTheContext) {
  bool before = true;
  bool after = false;
  log.on_call = [&](const std::string& call) {
    if (call == "getInstance(null)") before = cacheExists();
    if (call == "context.init(0, 0)") after = cacheExists();
  };
  c_context_init(0, 0);
  EXPECT_FALSE(before);
  EXPECT_TRUE(after);
}

TEST_F(StartTest, InitWithoutAContextFailsButCreatesTheCache) {
  proxy.instance = nullptr;
  EXPECT_EQ(c_context_init(0, 0), -1022);
  EXPECT_TRUE(cacheExists());
}

TEST_F(StartWithoutContextTest, InitReportsTheMissingContext) {
  EXPECT_EQ(c_context_init(0, 0), -1022);
  EXPECT_EQ(calls(), Calls({"getInstance(null)", "getInstance(null)",
                            "context.debugOut('cpp2c', 'NOT INITED! ERROR!')"}));
}

TEST_F(LifecycleTest, SecondInitKeepsTheCacheAndItsContents) {
  int place = 0;
  c_context_init(0, 0);
  c_dbc_add_userdata(5, "x", &place);
  c_context_init(0, 0);
  EXPECT_EQ(c_dbc_get_userdata(5, "x"), &place);
}

TEST_F(LifecycleTest, LoadReturnsTheResultOfTheContext) {
  log.results["context.load"] = -3;
  EXPECT_EQ(c_context_load(), -3);
  EXPECT_EQ(calls(), Calls({"context.load()"}));
}

TEST_F(LifecycleTest, RunReturnsTheResultOfTheLoop) {
  log.results["loop.run"] = 42;
  EXPECT_EQ(c_loop_run(), 42);
  EXPECT_EQ(calls(), Calls({"context.getLoop()", "loop.run()"}));
}

TEST_F(LifecycleTest, RunWithoutALoopReturnsZero) {
  context.missing.insert("getLoop");
  log.results["loop.run"] = 42;
  EXPECT_EQ(c_loop_run(), 0);
  EXPECT_EQ(calls(), Calls({"context.getLoop()"}));
}

TEST_F(LifecycleTest, DebugSwitchReturnsTheResultOfTheContext) {
  log.results["context.debugSwitch"] = 9;
  EXPECT_EQ(c_context_debug_switch(-4), 9);
  EXPECT_EQ(calls(), Calls({"context.debugSwitch(-4)"}));
}

TEST_F(LifecycleTest, HeartbeatLockReturnsTheResultOfTheHeartbeat) {
  log.results["heartbeat.lock"] = 11;
  EXPECT_EQ(c_heartbeat_lock(), 11);
  EXPECT_EQ(calls(), Calls({"context.getHeartbeat()", "heartbeat.lock()"}));
}

TEST_F(LifecycleTest, HeartbeatUnlockReturnsTheResultOfTheHeartbeat) {
  log.results["heartbeat.unlock"] = 12;
  EXPECT_EQ(c_heartbeat_unlock(), 12);
  EXPECT_EQ(calls(), Calls({"context.getHeartbeat()", "heartbeat.unlock()"}));
}

TEST_F(LifecycleTest, HeartbeatLockWithoutAHeartbeatReturnsZero) {
  context.missing.insert("getHeartbeat");
  EXPECT_EQ(c_heartbeat_lock(), 0);
  EXPECT_EQ(calls(), Calls({"context.getHeartbeat()"}));
}

TEST_F(LifecycleTest, HeartbeatUnlockWithoutAHeartbeatReturnsZero) {
  context.missing.insert("getHeartbeat");
  EXPECT_EQ(c_heartbeat_unlock(), 0);
  EXPECT_EQ(calls(), Calls({"context.getHeartbeat()"}));
}

TEST_F(LifecycleTest, SavePassesOneToTheConfigurationService) {
  log.results["cfm.save"] = -8;
  EXPECT_EQ(c_cfm_save_config(), -8);
  EXPECT_EQ(calls(), Calls({"context.getCfm()", "cfm.save(1)"}));
}

TEST_F(LifecycleTest, SaveWithoutAConfigurationServiceReturnsZero) {
  context.missing.insert("getCfm");
  EXPECT_EQ(c_cfm_save_config(), 0);
  EXPECT_EQ(calls(), Calls({"context.getCfm()"}));
}

TEST_F(LifecycleTest, DeinitReleasesTheContextWithoutUnregistering) {
  cfm.instances[5] = {"A.1."};
  c_context_init(0, 0);
  c_cfm_regist_observer(5, noObserver, nullptr);
  c_event_regist_observer("link", noEvent, nullptr);
  c_loop_add_fd(3, 1, noEvents, nullptr);
  calls();
  c_context_deinit();
  EXPECT_EQ(calls(), Calls({"relInstance(object)"}));
}

TEST_F(LifecycleTest, DeinitWithoutRegistrationsReleasesTheContextAndTheCache) {
  c_context_init(0, 0);
  calls();
  c_context_deinit();
  EXPECT_EQ(calls(), Calls({"relInstance(object)"}));
  EXPECT_FALSE(cacheExists());
}

TEST_F(LifecycleTest, DeinitDestroysTheCacheAfterTheContextHasBeenReleased) {
  bool existed = false;
  c_context_init(0, 0);
  log.on_call = [&existed](const std::string& call) {
    if (call == "relInstance(object)") existed = cacheExists();
  };
  c_context_deinit();
  EXPECT_TRUE(existed);
  EXPECT_FALSE(cacheExists());
}

TEST_F(LifecycleTest, DeinitForgetsTheConfigurationObservers) {
  c_cfm_regist_observer(5, noObserver, nullptr);
  c_context_deinit();
  EXPECT_EQ(c_cfm_get_regist_observer_callback(5), nullptr);
}

TEST_F(LifecycleTest, DeinitForgetsTheEventObservers) {
  c_event_regist_observer("link", noEvent, nullptr);
  c_context_deinit();
  c_event_unregist_observer("link", noEvent);
  EXPECT_TRUE(context.event.unregistered.empty());
}

TEST_F(LifecycleTest, SecondDeinitDoesNothing) {
  c_context_deinit();
  calls();
  c_context_deinit();
  EXPECT_EQ(calls(), Calls());
}

TEST_F(LifecycleTest, InitAfterDeinitObtainsTheContextAgain) {
  c_context_init(0, 0);
  c_context_deinit();
  calls();
  EXPECT_EQ(c_context_init(3, 4), 0);
  EXPECT_EQ(calls(), Calls({"getInstance(null)", "context.init(3, 4)"}));
}

TEST_F(LifecycleTest, InitAfterDeinitStartsWithAnEmptyCache) {
  int place = 0;
  c_context_init(0, 0);
  c_dbc_add_userdata(5, "x", &place);
  c_context_deinit();
  c_context_init(0, 0);
  EXPECT_EQ(c_dbc_get_userdata(5, "x"), nullptr);
}

}  // namespace
