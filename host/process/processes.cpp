// SPDX-License-Identifier: MIT
#include "host/process/processes.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "binding/context.h"
#include "host/include/cpp2c_host.h"
#include "include_c"

namespace host {
namespace {

// The program's output so far must precede the command's.
void flushOutput() {
  std::fflush(stdout);
  std::fflush(stderr);
}

// Unlike system(), does not ignore SIGINT, which may be meant to stop the service.
bool spawnShell(const char* command, pid_t& child) {
  char shell[] = "sh";
  char option[] = "-c";
  char* const arguments[] = {shell, option, const_cast<char*>(command), nullptr};
  return posix_spawn(&child, "/bin/sh", nullptr, nullptr, arguments, environ) == 0;
}

bool waitFor(pid_t child, int& status) {
  pid_t ended = -1;
  do {
    ended = waitpid(child, &status, 0);
  } while (ended < 0 && errno == EINTR);
  return ended == child;
}

int exitStatus(int status) {
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

bool readLine(char** line, std::size_t* size, std::FILE* output) {
  ssize_t length = -1;
  do {
    errno = 0;
    std::clearerr(output);
    length = getline(line, size, output);
  } while (length < 0 && errno == EINTR);
  return length >= 0;
}

void logLines(std::FILE* output, ILog& log) {
  char* line = nullptr;
  std::size_t size = 0;
  while (readLine(&line, &size, output)) log.record("command", C_LOG_INFO, line);
  std::free(line);
}

}  // namespace

int Processes::run(const char* command) {
  if (command == nullptr) return C_RESULT_PARAM;
  flushOutput();
  pid_t child = -1;
  int status = 0;
  if (!spawnShell(command, child) || !waitFor(child, status)) return C_RESULT_SYSTEM_CALL;
  return exitStatus(status);
}

int Processes::runLogged(const char* command) {
  if (command == nullptr) return C_RESULT_PARAM;
  flushOutput();
  std::FILE* output = popen(command, "re");
  if (output == nullptr) return C_RESULT_SYSTEM_CALL;
  logLines(output, log_);
  const int status = pclose(output);
  return status >= 0 ? exitStatus(status) : static_cast<int>(C_RESULT_SYSTEM_CALL);
}

}  // namespace host
