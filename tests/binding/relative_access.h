// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_BINDING_RELATIVE_ACCESS_H
#define CPP2C_TESTS_BINDING_RELATIVE_ACCESS_H

#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "include_c"

// One of the two functions for relative access, with a 32-bit integer as its data.
struct RelativeAccess {
  const char* function;
  const char* verb;
  int (*run)(const char* base, const char* relpath, const char* name, const char* type);
};

inline int setWord(const char* base, const char* relpath, const char* name, const char* type) {
  const std::int32_t word = 42;
  return c_cfm_set_value_v2(base, relpath, name, type, &word, sizeof word, 7);
}

inline int getWord(const char* base, const char* relpath, const char* name, const char* type) {
  std::int32_t word = 0;
  return c_cfm_get_value_v2(base, relpath, name, type, &word, sizeof word);
}

// Both functions, as test parameters.
inline auto relativeAccesses() {
  return ::testing::Values(RelativeAccess{"c_cfm_set_value_v2", "Set", setWord},
                           RelativeAccess{"c_cfm_get_value_v2", "Get", getWord});
}

inline std::string verbOf(const ::testing::TestParamInfo<RelativeAccess>& access) {
  return access.param.verb;
}

#endif
