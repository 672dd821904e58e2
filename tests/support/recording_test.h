// SPDX-License-Identifier: MIT
// Fixtures for tests that call C functions and check the resulting calls of the context.
#ifndef CPP2C_TESTS_SUPPORT_RECORDING_TEST_H
#define CPP2C_TESTS_SUPPORT_RECORDING_TEST_H

#include <gtest/gtest.h>

#include "binding/dll_mgr.h"
#include "include_c"
#include "tests/support/context_proxy.h"

// Starts with a new recording context that has not been obtained yet. Ends with c_context_deinit(), so that
// no state remains for the next test.
class UnopenedContextTest : public ::testing::Test {
 protected:
  UnopenedContextTest()
      : proxy(renewContextProxy()), log(proxy.calls), context(proxy.context), cfm(context.cfm) {}

  ~UnopenedContextTest() override {
    log.on_call = nullptr;
    c_context_deinit();
  }

  void TearDown() override {
    EXPECT_TRUE(cfm.nodes_on_loan.empty());
    EXPECT_TRUE(cfm.iterators_on_loan.empty());
  }

  // Returns the calls of the context since the last calls().
  Calls calls() { return log.take(); }

  ContextProxy& proxy;
  CallLog& log;
  RecordingContext& context;
  RecordingCfm& cfm;
};

// Starts with the context obtained and an empty log.
class RecordingTest : public UnopenedContextTest {
 protected:
  RecordingTest() {
    getContext();
    log.take();
  }
};

#endif
