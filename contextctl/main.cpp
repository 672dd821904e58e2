// SPDX-License-Identifier: MIT
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <iostream>
#include <new>

#include "contextctl/command_line.h"
#include "contextctl/system/failure.h"
#include "util/text.h"

namespace contextctl {
namespace {

// Not by an exception: nlohmann::json allocates memory in destructors, which must not throw.
[[noreturn]] void endWithoutMemory() {
  constexpr const char* kMessage = "contextctl: out of memory\n";
  std::fputs(kMessage, stderr);  // unbuffered
  _exit(kExitNoAnswer);
}

int complain(const char* reason, ExitStatus status) {
  std::cerr << "contextctl: " << util::printable(reason) << '\n';
  return status;
}

}  // namespace
}  // namespace contextctl

int main(int argc, char** argv) {
  std::set_new_handler(contextctl::endWithoutMemory);
  try {
    return contextctl::runCommandLine(argc, argv);
  } catch (const contextctl::Failure& failure) {
    return contextctl::complain(failure.what(), failure.status());
  } catch (const std::exception& error) {
    return contextctl::complain(error.what(), contextctl::kExitNoAnswer);
  }
}
