// SPDX-License-Identifier: MIT
#ifndef CPP2C_UTIL_ERROR_H
#define CPP2C_UTIL_ERROR_H

#include <stdexcept>
#include <string>

namespace util {

// A failure: one line for the user, and the negative result code that a C program gets for it.
class Error : public std::runtime_error {
 public:
  Error(int code, const std::string& message) : std::runtime_error(message), code_(code) {}

  int code() const { return code_; }

 private:
  int code_;
};

}  // namespace util

#endif
