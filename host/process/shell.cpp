// SPDX-License-Identifier: MIT
#include "host/process/shell.h"

#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#include "include_c"

namespace host {
namespace {

sigset_t onlyChildSignal() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGCHLD);
  return signals;
}

bool discardsStatus(const struct sigaction& action) {
  return action.sa_handler == SIG_IGN || (action.sa_flags & SA_NOCLDWAIT) != 0;
}

// The kernel would have discarded the children that ended meanwhile.
void discardEndedChildren() {
  while (waitpid(-1, nullptr, WNOHANG) > 0) {
  }
}

int exitStatus(int status) {
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

// Not pidfd_open(): glibc 2.36 declares it without C linkage.
int endOf(pid_t process) {
  return static_cast<int>(syscall(SYS_pidfd_open, process, 0));
}

// The standard output of a started process, and the signals that it blocks.
class Settings {
 public:
  Settings(int output, const sigset_t& mask) {
    posix_spawn_file_actions_init(&files_);
    posix_spawnattr_init(&attributes_);
    posix_spawnattr_setsigmask(&attributes_, &mask);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK);
    complete_ =
        output == Shell::kInherited || posix_spawn_file_actions_adddup2(&files_, output, STDOUT_FILENO) == 0;
  }
  ~Settings() {
    posix_spawnattr_destroy(&attributes_);
    posix_spawn_file_actions_destroy(&files_);
  }
  Settings(const Settings&) = delete;
  Settings& operator=(const Settings&) = delete;

  bool areComplete() const { return complete_; }  // false: no memory
  const posix_spawn_file_actions_t* files() const { return &files_; }
  const posix_spawnattr_t* attributes() const { return &attributes_; }

 private:
  posix_spawn_file_actions_t files_{};
  posix_spawnattr_t attributes_{};
  bool complete_ = false;
};

}  // namespace

ChildStatusGuard::ChildStatusGuard() {
  const sigset_t child_signal = onlyChildSignal();
  pthread_sigmask(SIG_BLOCK, &child_signal, &mask_before_);
  sigaction(SIGCHLD, nullptr, &action_before_);
  discards_ = discardsStatus(action_before_);
  if (!discards_) return;
  struct sigaction keeping {};
  keeping.sa_handler = SIG_DFL;
  sigaction(SIGCHLD, &keeping, nullptr);
}

ChildStatusGuard::~ChildStatusGuard() {
  if (discards_) {
    sigaction(SIGCHLD, &action_before_, nullptr);
    discardEndedChildren();
  }
  pthread_sigmask(SIG_SETMASK, &mask_before_, nullptr);
}

Shell::Shell(const char* command, int output) {
  if (start(command, output)) end_ = endOf(process_);
}

Shell::~Shell() {
  if (end_ >= 0) close(end_);
}

// Unlike system(), does not ignore SIGINT, which may be meant to stop the service.
bool Shell::start(const char* command, int output) {
  char shell[] = "sh";
  char option[] = "-c";
  char* const arguments[] = {shell, option, const_cast<char*>(command), nullptr};
  const Settings settings(output, guard_.maskBefore());
  pid_t process = -1;
  if (!settings.areComplete() ||
      posix_spawn(&process, "/bin/sh", settings.files(), settings.attributes(), arguments, environ) != 0) {
    return false;
  }
  process_ = process;
  return true;
}

int Shell::wait() const {
  if (process_ < 0) return C_RESULT_SYSTEM_CALL;
  int status = 0;
  pid_t ended = -1;
  do {
    ended = waitpid(process_, &status, 0);
  } while (ended < 0 && errno == EINTR);
  return ended == process_ ? exitStatus(status) : static_cast<int>(C_RESULT_SYSTEM_CALL);
}

}  // namespace host
