// SPDX-License-Identifier: MIT
// The context library of the tests. The dynamic loader identifies it by its SONAME, so a test that is linked
// with it and the library under test use the same instance.
#ifndef CPP2C_TESTS_SUPPORT_CONTEXT_PROXY_H
#define CPP2C_TESTS_SUPPORT_CONTEXT_PROXY_H

#include <vector>

#include "tests/support/call_log.h"
#include "tests/support/recording_context.h"

struct ContextProxy {
  CallLog calls;
  RecordingContext context{calls};
  IContext* instance = &context;  // result of "getInstance"
  std::vector<void*> released;    // arguments of "relInstance", in order
};

// Returns the state of the context library.
ContextProxy& contextProxy();

// Resets the state and returns it. Everything obtained from the previous state becomes invalid.
ContextProxy& renewContextProxy();

extern "C" {
void* getInstance(void* caller);
void relInstance(void* instance);
}

#endif
