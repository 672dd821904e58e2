// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_CONTEXTCTL_RUNNING_H
#define CPP2C_TESTS_CONTEXTCTL_RUNNING_H

#include <sys/time.h>
#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

#include <event2/event.h>

namespace contextctl {

// What a program has written, and how it ended.
struct Outcome {
  int status = -1;  // of its exit; -1: a signal ended it
  std::string out;
  std::string err;
};

// Called after each piece of output.
using OnOutput = std::function<void(pid_t process, const Outcome& so_far)>;

constexpr timeval kLongestRun = {20, 0};

// Runs a program, given by the words of its command line, and serves `base` meanwhile. Its environment is
// this process's with these variables changed ("NAME=value") or taken away ("NAME"). After `longest` it and
// its children are ended, and the test has failed.
Outcome runProgram(event_base* base, const std::vector<std::string>& words,
                   const std::vector<std::string>& environment, const OnOutput& on_output,
                   const timeval& longest = kLongestRun);

}  // namespace contextctl

#endif
