// SPDX-License-Identifier: MIT
// A process in which there is no context library: every function answers, and nobody prints anything.
#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "binding/dll_mgr.h"
#include "boot/module.h"
#include "include_c"
#include "tests/support/opened_library.h"
#include "tests/support/printed_text.h"

namespace {

class NoContextTest : public testing::Test {
 protected:
  ~NoContextTest() override { c_context_deinit(); }

  void TearDown() override {
    EXPECT_EQ(printed.standardOutput(), "");
    EXPECT_EQ(printed.standardError(), "");
  }

  PrintedText printed;
};

void neverReady(void* /*user*/, short /*events*/, int /*value*/) {
  ADD_FAILURE();
}

int neverRaised(void* /*user*/, const char* /*event*/, const char* /*data*/, const char* /*source*/) {
  ADD_FAILURE();
  return 0;
}

int neverChanged(void* /*user*/, int /*id*/, const char* /*instance*/, int /*operation*/,
                 const char* /*leaf*/) {
  ADD_FAILURE();
  return 0;
}

TEST_F(NoContextTest, ThereIsNoContext) {
  EXPECT_EQ(getContext(), nullptr);
  EXPECT_EQ(getContext(), nullptr);
}

TEST_F(NoContextTest, ReleaseIsHarmless) {
  releaseContext(nullptr);
  getContext();
  releaseContext(nullptr);
  releaseContext(nullptr);
}

TEST_F(NoContextTest, LibraryIsOpenedAgainOnlyAfterARelease) {
  ASSERT_EQ(getContext(), nullptr);
  OpenedLibrary library(COUNTING_CONTEXT);
  ASSERT_TRUE(library);
  EXPECT_EQ(getContext(), nullptr);

  releaseContext(nullptr);
  EXPECT_NE(getContext(), nullptr);
  releaseContext(nullptr);
}

TEST_F(NoContextTest, InitFailsAndCreatesTheCache) {
  int place = 0;
  EXPECT_EQ(c_context_init(1, 2), -1022);
  c_dbc_add_userdata(5, "x", &place);
  EXPECT_EQ(c_dbc_get_userdata(5, "x"), &place);
}

TEST_F(NoContextTest, DeinitDestroysTheCache) {
  int place = 0;
  c_context_init(0, 0);
  c_dbc_add_userdata(5, "x", &place);
  c_context_deinit();
  EXPECT_EQ(c_dbc_get_userdata(5, "x"), nullptr);
}

TEST_F(NoContextTest, LifecycleFunctionsReturnZero) {
  EXPECT_EQ(c_context_load(), 0);
  EXPECT_EQ(c_loop_run(), 0);
  EXPECT_EQ(c_context_debug_switch(1), 0);
  EXPECT_EQ(c_heartbeat_lock(), 0);
  EXPECT_EQ(c_heartbeat_unlock(), 0);
  EXPECT_EQ(c_cfm_save_config(), 0);
}

TEST_F(NoContextTest, DiagnosticsAreDropped) {
  EXPECT_EQ(c_debug_out("here.c", 1, "%s", "text"), 0);
}

TEST_F(NoContextTest, WatchesAreNotKept) {
  EXPECT_EQ(c_loop_add_fd(3, 1, neverReady, nullptr), 0);
  c_loop_del_fd(3);
  c_loop_del_fd(4);
}

TEST_F(NoContextTest, EventFunctionsDoNothing) {
  c_event_regist_observer("link", neverRaised, nullptr);
  c_event_notify("link", "up");
  c_event_unregist_observer("link", neverRaised);
}

TEST_F(NoContextTest, ConfigurationObserversAreNotKept) {
  c_cfm_regist_observer(5, neverChanged, nullptr);
  EXPECT_EQ(c_cfm_get_regist_observer_callback(5), nullptr);
  c_cfm_unregist_observer(5, neverChanged);
}

TEST_F(NoContextTest, ObserverFunctionsLeaveTheCacheAlone) {
  int place = 0;
  c_dbc_create();
  c_dbc_add_userdata(5, "x", &place);
  c_cfm_regist_observer(5, neverChanged, nullptr);
  c_cfm_unregist_observer(5, neverChanged);
  EXPECT_EQ(c_dbc_get_userdata(5, "x"), &place);
}

TEST_F(NoContextTest, ValuesAreRefusedAfterTheirArguments) {
  std::int32_t word = 77;
  EXPECT_EQ(c_cfm_set_value(nullptr, 0, "int", &word, 4), -1023);
  EXPECT_EQ(c_cfm_set_value("A.B", 0, nullptr, &word, 4), -1023);
  EXPECT_EQ(c_cfm_set_value("A.B", 0, "int", nullptr, 4), -1023);
  EXPECT_EQ(c_cfm_set_value("A.B", 0, "int", &word, 0), -1023);
  EXPECT_EQ(c_cfm_set_value("A.B", 0, "int", &word, 4), -1022);
  EXPECT_EQ(c_cfm_get_value(nullptr, "int", &word, 4), -1023);
  EXPECT_EQ(c_cfm_get_value("A.B", nullptr, &word, 4), -1023);
  EXPECT_EQ(c_cfm_get_value("A.B", "int", nullptr, 4), -1023);
  EXPECT_EQ(c_cfm_get_value("A.B", "int", &word, 0), -1023);
  EXPECT_EQ(c_cfm_get_value("A.B", "int", &word, 4), -1022);
  EXPECT_EQ(word, 77);
}

TEST_F(NoContextTest, TextsAreConverted) {
  int flag = 7;
  EXPECT_EQ(c_cfm_str2bool("true", &flag), 0);
  EXPECT_EQ(flag, 1);
  EXPECT_EQ(c_cfm_str2bool("yes", &flag), -1023);
  EXPECT_EQ(flag, 0);
}

TEST_F(NoContextTest, ModuleWithoutATableFails) {
  void* handle = c_module_regist(nullptr);
  EXPECT_EQ(static_cast<IModule*>(handle)->onLoad(), -1022);
  c_module_unregist(handle);
}

}  // namespace
