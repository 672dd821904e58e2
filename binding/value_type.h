// SPDX-License-Identifier: MIT
// The value types of the configuration tree, and how their values look in C and in the tree.
#ifndef CPP2C_BINDING_VALUE_TYPE_H
#define CPP2C_BINDING_VALUE_TYPE_H

#include <cstdint>

// How C code holds a value of a type.
enum class ValueKind {
  kUnknown,  // not a type of the C interface
  kText,     // NUL-terminated, passed through as it stands
  kWord,     // 32-bit integer, decimal in the tree
  kFlag      // 32-bit integer, "true" or "false" in the tree
};

// The kind of the type called `type`, compared byte for byte.
ValueKind valueKind(const char* type);

// A 32-bit word behind a C caller's pointer, which need not be aligned.
std::int32_t loadWord(const void* data);
void storeWord(void* data, std::int32_t word);

// A word as signed decimal text, for "uint" as well: C programs and the tree agree on the bits, and
// 4294967295 is
// "-1" in the tree.
class WordText {
 public:
  explicit WordText(std::int32_t word);

  const char* c_str() const { return text_; }

 private:
  char text_[sizeof "-2147483648"] = {};
};

#endif
