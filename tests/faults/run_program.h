// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_FAULTS_RUN_PROGRAM_H
#define CPP2C_TESTS_FAULTS_RUN_PROGRAM_H

#include <sys/types.h>

#include <map>
#include <string>
#include <vector>

namespace faults {

// The call that is to fail; none if `number` is 0. See preload/fail_call.h.
struct Fault {
  std::string call;
  unsigned long number = 0;
  int error = 0;
};

// "malloc 17 (Cannot allocate memory)"
std::string textOf(const Fault& fault);

using Command = std::vector<std::string>;
using Counts = std::map<std::string, unsigned long>;

// Starts a program with its output in the files "out" and "err" of a folder, which is its working directory,
// and with the fault. The program counts its calls in the file "counts". It is ended by SIGALRM after 20
// seconds.
pid_t start(const Command& command, const std::string& folder, const Fault& fault = {});

// Waits for its end. Returns an empty string if it exited with a status up to `last_status`, otherwise how it
// ended.
std::string waitFor(pid_t program, int last_status);
int exitStatusOf(pid_t program, std::string& failure);

std::string readText(const std::string& file);
std::vector<std::string> readLines(const std::string& file);

// Reads and removes the file "counts" of a folder.
Counts takeCounts(const std::string& folder);

}  // namespace faults

#endif
