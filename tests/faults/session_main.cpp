// SPDX-License-Identifier: MIT
// Runs the steps that the first argument selects: "run", "serve" or "check". The other arguments are the file
// of the report, the control socket, and the options of the host context.
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstring>
#include <new>

#include "session.h"

namespace {

// A C program would end by an exception. Each failed step is reported instead, and the next step is tried.
void runStep(const session_step_t& step) {
  try {
    session_report_number(step.name, step.run());
  } catch (const std::bad_alloc&) {
    session_report(step.name, "bad_alloc");
  }
}

const session_step_t* stepsOf(const char* mode) {
  if (std::strcmp(mode, "check") == 0) return kSessionCheck;
  return std::strcmp(mode, "serve") == 0 ? kSessionService : kSessionSteps;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) return 2;
  const auto report = static_cast<int>(
      syscall(SYS_openat, AT_FDCWD, argv[2], O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
  if (report < 0) return 2;
  session_start(argc - 3, argv + 3, argv[3], report);
  for (const session_step_t* step = stepsOf(argv[1]); step->name != nullptr; step++) runStep(*step);
  return 0;
}
