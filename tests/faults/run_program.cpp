// SPDX-License-Identifier: MIT
#include "tests/faults/run_program.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace faults {
namespace {

constexpr unsigned kSeconds = 20;

void redirect(int fd, const char* file) {
  const int opened = open(file, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  if (opened < 0 || dup2(opened, fd) < 0) _exit(126);
}

[[noreturn]] void run(const Command& command, const std::string& folder, const Fault& fault) {
  std::vector<char*> arguments;
  for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  const std::string failing =
      fault.call + ':' + std::to_string(fault.number) + ':' + std::to_string(fault.error);
  if (chdir(folder.c_str()) != 0) _exit(126);
  redirect(STDOUT_FILENO, "out");
  redirect(STDERR_FILENO, "err");
  setenv("LD_PRELOAD", FAIL_CALL_LIBRARY, 1);
  setenv("FAIL_COUNTS", (folder + "/counts").c_str(), 1);
  if (fault.number != 0) setenv("FAIL_CALL", failing.c_str(), 1);
  alarm(kSeconds);
  execv(arguments[0], arguments.data());
  _exit(127);
}

std::string howEnded(int signal) {
  if (signal == SIGALRM) return "hangs";
  return std::string("ended by signal ") + std::to_string(signal) + " (" + strsignal(signal) + ')';
}

}  // namespace

std::string textOf(const Fault& fault) {
  return fault.call + ' ' + std::to_string(fault.number) + " (" + std::strerror(fault.error) + ')';
}

pid_t start(const Command& command, const std::string& folder, const Fault& fault) {
  const pid_t program = fork();
  if (program < 0) throw std::runtime_error("cannot start a process");
  if (program == 0) run(command, folder, fault);
  return program;
}

int exitStatusOf(pid_t program, std::string& failure) {
  int status = 0;
  if (waitpid(program, &status, 0) != program) throw std::runtime_error("cannot wait for a process");
  failure = WIFSIGNALED(status) ? howEnded(WTERMSIG(status)) : "";
  return WIFSIGNALED(status) ? -1 : WEXITSTATUS(status);
}

std::string waitFor(pid_t program, int last_status) {
  std::string failure;
  const int status = exitStatusOf(program, failure);
  if (status > last_status) failure = "ended with status " + std::to_string(status);
  return failure;
}

std::string readText(const std::string& file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<std::string> readLines(const std::string& file) {
  std::vector<std::string> lines;
  std::ifstream stream(file);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

Counts takeCounts(const std::string& folder) {
  Counts counts;
  const std::string file = folder + "/counts";
  std::ifstream stream(file);
  std::string name;
  for (unsigned long count = 0; stream >> name >> count;) counts[name] += count;
  std::remove(file.c_str());
  return counts;
}

}  // namespace faults
