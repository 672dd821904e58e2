// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_HOST_SUPPORT_WITHOUT_STANDARD_INPUT_H
#define CPP2C_TESTS_HOST_SUPPORT_WITHOUT_STANDARD_INPUT_H

#include <fcntl.h>
#include <unistd.h>

namespace host {

// Closes standard input during its lifetime, as for a daemon: the next file that is opened has descriptor 0.
class WithoutStandardInput {
 public:
  WithoutStandardInput() : input_(fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3)) { close(STDIN_FILENO); }
  ~WithoutStandardInput() {
    dup2(input_, STDIN_FILENO);
    close(input_);
  }
  WithoutStandardInput(const WithoutStandardInput&) = delete;
  WithoutStandardInput& operator=(const WithoutStandardInput&) = delete;

 private:
  const int input_;
};

}  // namespace host

#endif
