// SPDX-License-Identifier: MIT
#ifndef CPP2C_BINDING_BOUNDED_TEXT_H
#define CPP2C_BINDING_BOUNDED_TEXT_H

#include <cstdarg>
#include <cstddef>
#include <cstdio>

// Text formatted into a fixed buffer of `Size` bytes; what is longer is cut silently.
//
// The limit given to the formatter leaves the buffer's last byte unused, so texts end at Size - 2 bytes and
// not at Size - 1. Programs rely on the lengths, so it stays.
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
