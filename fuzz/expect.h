// SPDX-License-Identifier: MIT
// Comparison of the library with a model of it.
#ifndef CPP2C_FUZZ_EXPECT_H
#define CPP2C_FUZZ_EXPECT_H

#include <cstdio>
#include <cstdlib>
#include <string>

#include "tests/support/call_log.h"

inline std::string shown(const std::string& text) {
  std::string result = "\"";
  for (const char c : text) {
    char code[5];
    const auto byte = static_cast<unsigned char>(c);
    std::snprintf(code, sizeof code, byte < 0x20 || byte > 0x7E ? "\\x%02x" : "%c", byte);
    result += code;
  }
  return result + '"';
}

inline std::string shown(int number) {
  return std::to_string(number);
}

inline std::string shown(const Calls& calls) {
  std::string result;
  for (const std::string& call : calls) result += "\n    " + call;
  return result.empty() ? "nothing" : result;
}

// Aborts the process unless the library's value is the model's. `what` names the value.
template <typename Value>
void requireEqual(const Value& library, const Value& model, const std::string& what) {
  if (library == model) return;
  std::fprintf(stderr, "The library and the model differ in %s:\n  library: %s\n  model:   %s\n",
               what.c_str(), shown(library).c_str(), shown(model).c_str());
  std::abort();
}

// A diagnostic of the library, as the call log shows it.
inline std::string diagnostic(const std::string& text, const std::string& file = "cpp2c") {
  return "context.debugOut('" + file + "', '" + text + "')";
}

#endif
