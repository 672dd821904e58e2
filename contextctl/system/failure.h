// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_SYSTEM_FAILURE_H
#define CPP2C_CONTEXTCTL_SYSTEM_FAILURE_H

#include <stdexcept>
#include <string>

namespace contextctl {

// Scripts rely on these values.
enum ExitStatus {
  kExitOk = 0,
  kExitNo = 1,        // the answer is no: an unknown name, a refused value, a difference, no fit
  kExitUsage = 2,     // wrong usage
  kExitNoAnswer = 3,  // no connection, no valid answer in time, or a file that cannot be read or written
};

// Ends a command: a message of one line for the user, and the exit status.
class Failure : public std::runtime_error {
 public:
  Failure(ExitStatus status, const std::string& message) : std::runtime_error(message), status_(status) {}

  ExitStatus status() const { return status_; }

 private:
  ExitStatus status_;
};

}  // namespace contextctl

#endif
