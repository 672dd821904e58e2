// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_PROCESS_SHELL_H
#define CPP2C_HOST_PROCESS_SHELL_H

#include <signal.h>
#include <sys/types.h>

namespace host {

// Keeps the program's handling of SIGCHLD from taking the status of a command, while it exists: a handler
// that reaps every child is called only afterwards, and an ignored SIGCHLD does not discard the status.
class ChildStatusGuard {
 public:
  ChildStatusGuard();
  ~ChildStatusGuard();
  ChildStatusGuard(const ChildStatusGuard&) = delete;
  ChildStatusGuard& operator=(const ChildStatusGuard&) = delete;

  const sigset_t& maskBefore() const { return mask_before_; }

 private:
  struct sigaction action_before_ {};
  sigset_t mask_before_{};
  bool discards_ = false;
};

// A shell that runs one command.
class Shell {
 public:
  static constexpr int kInherited = -1;

  // Starts the shell with `output` as its standard output.
  Shell(const char* command, int output);
  ~Shell();
  Shell(const Shell&) = delete;
  Shell& operator=(const Shell&) = delete;

  // A descriptor that is readable once the shell has ended; -1 if there is none.
  int end() const { return end_; }

  // Waits until the shell ends. Returns its exit status, 128 + N if signal N ended it, or
  // C_RESULT_SYSTEM_CALL if it could not be started.
  int wait() const;

 private:
  bool start(const char* command, int output);

  ChildStatusGuard guard_;
  pid_t process_ = -1;
  int end_ = -1;
};

}  // namespace host

#endif
