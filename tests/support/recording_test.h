// SPDX-License-Identifier: MIT
// The fixtures of tests that look at both sides of the library: C calls on one, the context on the other.
#ifndef CPP2C_TESTS_SUPPORT_RECORDING_TEST_H
#define CPP2C_TESTS_SUPPORT_RECORDING_TEST_H

#include <gtest/gtest.h>

#include "binding/dll_mgr.h"
#include "include_c"
#include "tests/support/context_proxy.h"

// Starts with a recording context in its first state that has not been obtained yet, and ends with the
// teardown of the C interface, so that no test finds anything of the one before.
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

  // The calls on the context since calls() was called last.
  Calls calls() { return log.take(); }

  ContextProxy& proxy;
  CallLog& log;
  RecordingContext& context;
  RecordingCfm& cfm;
};

// Starts with the context obtained and nothing in the log.
class RecordingTest : public UnopenedContextTest {
 protected:
  RecordingTest() {
    getContext();
    log.take();
  }
};

#endif
