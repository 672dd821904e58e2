// SPDX-License-Identifier: MIT
#include <exception>
#include <iostream>

#include "contextctl/command_line.h"
#include "contextctl/system/failure.h"
#include "util/text.h"

namespace contextctl {
namespace {

int complain(const char* reason, ExitStatus status) {
  std::cerr << "contextctl: " << util::printable(reason) << '\n';
  return status;
}

}  // namespace
}  // namespace contextctl

int main(int argc, char** argv) {
  try {
    return contextctl::runCommandLine(argc, argv);
  } catch (const contextctl::Failure& failure) {
    return contextctl::complain(failure.what(), failure.status());
  } catch (const std::exception& error) {
    return contextctl::complain(error.what(), contextctl::kExitNoAnswer);
  }
}
