// SPDX-License-Identifier: MIT
// The value types of the configuration tree and their representation in C.
#ifndef CPP2C_BINDING_VALUE_TYPE_H
#define CPP2C_BINDING_VALUE_TYPE_H

#include <cstdint>

// The C representation of a value.
enum class ValueKind {
  kUnknown,  // not a type of the C interface
  kText,     // NUL-terminated string, passed on unchanged
  kWord,     // 32-bit integer; decimal number in the tree
  kFlag      // 32-bit integer; "true" or "false" in the tree
};

// Returns the kind of the type `type`. The comparison is case-sensitive.
ValueKind valueKind(const char* type);

// Load and store a 32-bit word at a C caller's pointer, which need not be aligned.
std::int32_t loadWord(const void* data);
void storeWord(void* data, std::int32_t word);

// A word as signed decimal text. This also applies to "uint": 4294967295 becomes "-1".
class WordText {
 public:
  explicit WordText(std::int32_t word);

  const char* c_str() const { return text_; }

 private:
  char text_[sizeof "-2147483648"] = {};
};

#endif
