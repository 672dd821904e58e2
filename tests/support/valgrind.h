// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_SUPPORT_VALGRIND_H
#define CPP2C_TESTS_SUPPORT_VALGRIND_H

#include <cstdlib>

// Whether the test runs under valgrind, which is up to fifty times slower and lacks some system calls. The
// script under_valgrind sets the variable.
inline bool underValgrind() {
  return std::getenv("UNDER_VALGRIND") != nullptr;
}

#endif
