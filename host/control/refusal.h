// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONTROL_REFUSAL_H
#define CPP2C_HOST_CONTROL_REFUSAL_H

#include <stdexcept>
#include <string>

// Why a request is not done: a result code and one line for the user.
class Refusal : public std::runtime_error {
 public:
  Refusal(int result, const std::string& message) : std::runtime_error(message), result_(result) {}

  int result() const { return result_; }

 private:
  int result_;
};

#endif
