// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_SUPPORT_PASS_FUNCTIONS_H
#define CPP2C_TESTS_SUPPORT_PASS_FUNCTIONS_H

#include <gtest/gtest.h>

// The two functions that a lookup passes to its visits and never calls.

inline int neverCalled3(int /*id*/, char* /*name*/, void* /*userdata*/) {
  ADD_FAILURE() << "a function that is only passed through was called";
  return 0;
}

inline int neverCalled4(int /*id*/, char* /*name*/, void* /*userdata*/, void* /*arg*/) {
  ADD_FAILURE() << "a function that is only passed through was called";
  return 0;
}

#endif
