// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_CONTEXTCTL_RUN_PROGRAM_H
#define CPP2C_TESTS_CONTEXTCTL_RUN_PROGRAM_H

#include <sys/time.h>
#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

#include <event2/event.h>

namespace contextctl {

// The output and the end of a program.
struct Outcome {
  int status = -1;  // exit status; -1: ended by a signal
  std::string out;
  std::string err;
};

// Called after each piece of output.
using OnOutput = std::function<void(pid_t process, const Outcome& so_far)>;

constexpr timeval kLongestRun = {120, 0};

// Runs a program, given by the words of its command line, while dispatching the events of `base`. The
// environment is that of this process with variables set ("NAME=value") or removed ("NAME"). After `longest`,
// kills the program with its children and fails the test.
Outcome runProgram(event_base* base, const std::vector<std::string>& words,
                   const std::vector<std::string>& environment, const OnOutput& on_output,
                   const timeval& longest = kLongestRun);

}  // namespace contextctl

#endif
