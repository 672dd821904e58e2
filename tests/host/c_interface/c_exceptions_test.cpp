// SPDX-License-Identifier: MIT
// Callbacks written in C++ that throw.
#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/c_interface/c_interface_fixture.h"

using namespace host;

namespace {

constexpr const char* kConfig = R"({
  "objects": [{"number": 4, "name": "A.", "leaves": {
    "X": {"type": "int"}, "Y": {"type": "int", "default": 7, "computed": true}}}]
})";

void throwingReader(void* /*user*/, short /*events*/, int /*fd*/) {
  throw std::runtime_error("no route");
}

int throwingTimer() {
  throw std::out_of_range("no such port");
}

int throwingEvent(void* /*user*/, const char* /*event*/, const char* /*data*/, const char* /*source*/) {
  throw 5;
}

int throwingChange(void* /*user*/, int /*id*/, const char* /*instance*/, int /*operation*/,
                   const char* /*leaf*/) {
  throw std::runtime_error("refused");
}

void throwingProvider(int /*id*/, const char* /*instance*/, const char* /*leaf*/, void* /*user*/,
                      void* /*handle*/) {
  throw std::runtime_error("no sensor");
}

int throwingStep() {
  throw std::runtime_error("not ready");
}

std::vector<std::string> g_steps;

int unload() {
  g_steps.emplace_back("unload");
  return 0;
}

int stop() {
  return raise(SIGTERM);
}

class CExceptionsTest : public CInterfaceFixture {
 protected:
  CExceptionsTest() {
    g_steps.clear();
    EXPECT_EQ(initWith(kConfig), C_RESULT_OK);
  }

  void loadMaster() {
    master_.onUnload = unload;
    EXPECT_EQ(c_context_regist_master_observer(&master_), C_RESULT_OK);
    EXPECT_EQ(c_context_load(), C_RESULT_OK);
  }

  // The first record names the function, the cause of its call and the exception.
  void expectReported(const std::string& function, const std::string& thrown) const {
    const std::vector<std::string> all = records();
    ASSERT_FALSE(all.empty());
    const std::string& record = all.front();
    const std::string start = "error callback: the callback (anonymous namespace)::" + function + "(";
    EXPECT_EQ(record.rfind(start, 0), 0U) << record;
    EXPECT_NE(record.find("c_exceptions_test.cpp:"), std::string::npos) << record;
    EXPECT_EQ(record.substr(record.size() - std::min(record.size(), thrown.size())), thrown);
  }

  ModuleCallbacks master_ = {};
};

TEST_F(CExceptionsTest, OfATimerEndsTheLoopInGoodOrder) {
  loadMaster();
  c_context_set_timer(0, 0, throwingTimer);
  EXPECT_EQ(c_loop_run(), C_RESULT_SYSTEM_CALL);
  EXPECT_EQ(g_steps, std::vector<std::string>{"unload"});
  expectReported("throwingTimer", " of timer after 0 ms threw std::out_of_range: no such port");
}

TEST_F(CExceptionsTest, LoopRunsAgain) {
  c_context_set_timer(0, 0, throwingTimer);
  EXPECT_EQ(c_loop_run(), C_RESULT_SYSTEM_CALL);
  c_context_set_timer(0, 0, stop);
  EXPECT_EQ(c_loop_run(), C_RESULT_OK);
}

TEST_F(CExceptionsTest, OfAWatchEndsTheLoopInGoodOrder) {
  int ends[2];
  ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
  EXPECT_EQ(write(ends[1], "x", 1), 1);
  loadMaster();
  c_loop_add_fd(ends[0], C_LOOP_READ, throwingReader, nullptr);
  EXPECT_EQ(c_loop_run(), C_RESULT_SYSTEM_CALL);
  EXPECT_EQ(g_steps, std::vector<std::string>{"unload"});
  expectReported("throwingReader",
                 " of fd " + std::to_string(ends[0]) + " threw std::runtime_error: no route");
  c_loop_del_fd(ends[0]);
  close(ends[0]);
  close(ends[1]);
}

int notifyUp() {
  c_event_notify("up", "eth0");
  g_steps.emplace_back("notified");
  return 0;
}

TEST_F(CExceptionsTest, OfAnEventObserverEndsTheLoopOnceTheOuterCallbackReturns) {
  loadMaster();
  c_event_regist_observer("up", throwingEvent, nullptr);
  c_context_set_timer(0, 0, notifyUp);
  EXPECT_EQ(c_loop_run(), C_RESULT_SYSTEM_CALL);
  EXPECT_EQ(g_steps, (std::vector<std::string>{"notified", "unload"}));
  expectReported("throwingEvent", " of event up threw int");
}

TEST_F(CExceptionsTest, OfAChangeObserverFailsTheWriteOfTheStoredValue) {
  c_cfm_regist_observer(4, throwingChange, nullptr);
  int value = 3;
  EXPECT_EQ(c_cfm_set_value("A.X", 0, "int", &value, sizeof value), C_RESULT_SYSTEM_CALL);
  value = 0;
  EXPECT_EQ(c_cfm_get_value("A.X", "int", &value, sizeof value), C_RESULT_OK);
  EXPECT_EQ(value, 3);
  expectReported("throwingChange", " of change A. threw std::runtime_error: refused");
}

TEST_F(CExceptionsTest, OfAProviderGivesTheDefault) {
  c_cfm_data_provider_regist(4, throwingProvider, nullptr);
  int value = 0;
  EXPECT_EQ(c_cfm_get_value("A.Y", "int", &value, sizeof value), C_RESULT_OK);
  EXPECT_EQ(value, 7);
  expectReported("throwingProvider", " of provider A. threw std::runtime_error: no sensor");
}

TEST_F(CExceptionsTest, BeforeTheLoopDoesNotEndIt) {
  c_event_regist_observer("up", throwingEvent, nullptr);
  c_event_notify("up", "eth0");
  c_context_set_timer(0, 0, stop);
  EXPECT_EQ(c_loop_run(), C_RESULT_OK);
}

TEST_F(CExceptionsTest, OfAStepIsAFailureOfTheStep) {
  master_.onStart = throwingStep;
  master_.onUnload = unload;
  c_context_regist_master_observer(&master_);
  EXPECT_EQ(c_context_load(), C_RESULT_SYSTEM_CALL);
  EXPECT_EQ(g_steps, std::vector<std::string>{"unload"});
  expectReported("throwingStep",
                 " of module the master observer onStart threw std::runtime_error: not ready");
  EXPECT_EQ(records().back(), "error lifecycle: onStart of the master observer failed: -1021");
}

TEST_F(CExceptionsTest, OfTheLastStepFailsTheRun) {
  master_.onUnload = throwingStep;
  c_context_regist_master_observer(&master_);
  c_context_load();
  c_context_set_timer(0, 0, stop);
  EXPECT_EQ(c_loop_run(), C_RESULT_SYSTEM_CALL);
  expectReported("throwingStep",
                 " of module the master observer onUnload threw std::runtime_error: not ready");
}

}  // namespace
