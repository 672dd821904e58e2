// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_SUPPORT_LATE_CONTEXT_TEST_H
#define CPP2C_TESTS_SUPPORT_LATE_CONTEXT_TEST_H

#include <string>

#include "tests/support/recording_test.h"

// The first "getInstance" returns null, later ones return the context. A function thus finds no context, but
// its diagnostic does.
class LateContextTest : public UnopenedContextTest {
 protected:
  LateContextTest() {
    proxy.instance = nullptr;
    log.on_call = [this](const std::string& call) {
      if (call != "getInstance(null)") return;
      if (asked_) proxy.instance = &context;
      asked_ = true;
    };
  }

 private:
  bool asked_ = false;
};

#endif
