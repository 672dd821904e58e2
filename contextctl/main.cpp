// SPDX-License-Identifier: MIT
#include <exception>
#include <iostream>

#include "contextctl/command_line.h"
#include "contextctl/failure.h"
#include "util/text.h"

namespace {

int complain(const char* reason, ExitStatus status) {
  std::cerr << "contextctl: " << util::printable(reason) << '\n';
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return runCommandLine(argc, argv);
  } catch (const Failure& failure) {
    return complain(failure.what(), failure.status());
  } catch (const std::exception& error) {
    return complain(error.what(), kExitNoAnswer);
  }
}
