// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_START_ERROR_H
#define CPP2C_HOST_START_ERROR_H

#include <stdexcept>
#include <string>

// Why the context cannot start: one line for the user, and the result code of `init`.
class StartError : public std::runtime_error {
 public:
  StartError(int code, const std::string& message) : std::runtime_error(message), code_(code) {}

  int code() const { return code_; }

 private:
  int code_;
};

#endif
