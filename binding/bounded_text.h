// SPDX-License-Identifier: MIT
#ifndef CPP2C_BINDING_BOUNDED_TEXT_H
#define CPP2C_BINDING_BOUNDED_TEXT_H

#include <cstdarg>
#include <cstddef>
#include <cstdio>

// Text formatted into a fixed buffer of `Size` bytes. Longer text is truncated without a diagnostic.
//
// The size passed to vsnprintf() is one less than the buffer's, so text is truncated to Size - 2 bytes, not
// Size - 1. Programs depend on these lengths: keep them.
template <std::size_t Size>
class BoundedText {
 public:
  BoundedText(const char* format, va_list arguments) {
    std::vsnprintf(text_, sizeof text_ - 1, format, arguments);
  }

  const char* c_str() const { return text_; }

 private:
  char text_[Size] = {};
};

#endif
