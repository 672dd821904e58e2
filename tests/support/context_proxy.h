// SPDX-License-Identifier: MIT
// The context library of the tests. A program that is linked with it meets the same instance as the library
// under test, because the dynamic loader knows the library by its SONAME.
#ifndef CPP2C_TESTS_SUPPORT_CONTEXT_PROXY_H
#define CPP2C_TESTS_SUPPORT_CONTEXT_PROXY_H

#include <vector>

#include "tests/support/call_log.h"
#include "tests/support/recording_context.h"

struct ContextProxy {
  CallLog calls;
  RecordingContext context{calls};
  IContext* instance = &context;  // what "getInstance" answers
  std::vector<void*> released;    // by "relInstance", in order
};

// What the entry points of the context library work on.
ContextProxy& contextProxy();

// Replaces it by one in its first state. Everything obtained from the one before becomes invalid.
ContextProxy& renewContextProxy();

extern "C" {
void* getInstance(void* caller);
void relInstance(void* instance);
}

#endif
