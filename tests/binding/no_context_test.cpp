// SPDX-License-Identifier: MIT
// The C functions in a process without a context library. None of them prints anything.
#include <cstdint>
#include <ostream>

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

TEST_F(NoContextTest, GetContextReturnsNull) {
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

TEST_F(NoContextTest, LoadReturnsZero) {
  EXPECT_EQ(c_context_load(), 0);
}

TEST_F(NoContextTest, LoopRunReturnsZero) {
  EXPECT_EQ(c_loop_run(), 0);
}

TEST_F(NoContextTest, DebugSwitchReturnsZero) {
  EXPECT_EQ(c_context_debug_switch(1), 0);
}

TEST_F(NoContextTest, HeartbeatLockReturnsZero) {
  EXPECT_EQ(c_heartbeat_lock(), 0);
}

TEST_F(NoContextTest, HeartbeatUnlockReturnsZero) {
  EXPECT_EQ(c_heartbeat_unlock(), 0);
}

TEST_F(NoContextTest, SaveReturnsZero) {
  EXPECT_EQ(c_cfm_save_config(), 0);
}

TEST_F(NoContextTest, DiagnosticsAreDiscarded) {
  EXPECT_EQ(c_debug_out("here.c", 1, "%s", "text"), 0);
}

TEST_F(NoContextTest, WatchesAreNotStored) {
  EXPECT_EQ(c_loop_add_fd(3, 1, neverReady, nullptr), 0);
  c_loop_del_fd(3);
  c_loop_del_fd(4);
}

TEST_F(NoContextTest, EventFunctionsDoNothing) {
  c_event_regist_observer("link", neverRaised, nullptr);
  c_event_notify("link", "up");
  c_event_unregist_observer("link", neverRaised);
}

TEST_F(NoContextTest, ConfigurationObserversAreNotStored) {
  c_cfm_regist_observer(5, neverChanged, nullptr);
  EXPECT_EQ(c_cfm_get_regist_observer_callback(5), nullptr);
  c_cfm_unregist_observer(5, neverChanged);
}

TEST_F(NoContextTest, ObserverFunctionsDoNotChangeTheCache) {
  int place = 0;
  c_dbc_create();
  c_dbc_add_userdata(5, "x", &place);
  c_cfm_regist_observer(5, neverChanged, nullptr);
  c_cfm_unregist_observer(5, neverChanged);
  EXPECT_EQ(c_dbc_get_userdata(5, "x"), &place);
}

TEST_F(NoContextTest, WritingAValueIsNotInitialised) {
  const std::int32_t word = 77;
  EXPECT_EQ(c_cfm_set_value("A.B", 0, "int", &word, 4), -1022);
}

TEST_F(NoContextTest, ReadingAValueIsNotInitialised) {
  std::int32_t word = 77;
  EXPECT_EQ(c_cfm_get_value("A.B", "int", &word, 4), -1022);
  EXPECT_EQ(word, 77);
}

// Arguments for a write or read, one of them wrong.
struct WrongArguments {
  const char* description;
  const char* fullname;
  const char* type;
  bool has_data;
  unsigned int data_len;
};

std::ostream& operator<<(std::ostream& out, const WrongArguments& arguments) {
  return out << arguments.description;
}

class WrongArgumentsWithoutContextTest : public NoContextTest,
                                         public testing::WithParamInterface<WrongArguments> {
 protected:
  std::int32_t word = 77;
  std::int32_t* data = GetParam().has_data ? &word : nullptr;
};

TEST_P(WrongArgumentsWithoutContextTest, WritingAValueIsAParameterError) {
  EXPECT_EQ(c_cfm_set_value(GetParam().fullname, 0, GetParam().type, data, GetParam().data_len), -1023);
}

TEST_P(WrongArgumentsWithoutContextTest, ReadingAValueIsAParameterError) {
  EXPECT_EQ(c_cfm_get_value(GetParam().fullname, GetParam().type, data, GetParam().data_len), -1023);
  EXPECT_EQ(word, 77);
}

INSTANTIATE_TEST_SUITE_P(Values, WrongArgumentsWithoutContextTest,
                         testing::Values(WrongArguments{"NullName", nullptr, "int", true, 4},
                                         WrongArguments{"NullType", "A.B", nullptr, true, 4},
                                         WrongArguments{"NullData", "A.B", "int", false, 4},
                                         WrongArguments{"LengthZero", "A.B", "int", true, 0}),
                         testing::PrintToStringParamName());

TEST_F(NoContextTest, StringTrueIsConverted) {
  int flag = 7;
  EXPECT_EQ(c_cfm_str2bool("true", &flag), 0);
  EXPECT_EQ(flag, 1);
}

TEST_F(NoContextTest, ConvertingAnotherStringIsAParameterError) {
  int flag = 7;
  EXPECT_EQ(c_cfm_str2bool("yes", &flag), -1023);
  EXPECT_EQ(flag, 0);
}

TEST_F(NoContextTest, ModuleWithoutATableFails) {
  void* handle = c_module_regist(nullptr);
  EXPECT_EQ(static_cast<IModule*>(handle)->onLoad(), -1022);
  c_module_unregist(handle);
}

}  // namespace
