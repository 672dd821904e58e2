// SPDX-License-Identifier: MIT
#include "contextctl/system/interrupt.h"

#include <errno.h>
#include <poll.h>
#include <signal.h>
#include <string.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include "contextctl/system/deadline.h"
#include "contextctl/system/failure.h"

namespace contextctl {

Interrupt::Interrupt() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  fd_ = signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
  if (fd_ == -1) throw Failure(kExitNoAnswer, std::string("signalfd: ") + strerror(errno));
}

Interrupt::~Interrupt() {
  close(fd_);
}

bool Interrupt::wait(double seconds) const {
  const Deadline deadline(seconds);
  do {
    pollfd watch = {fd_, POLLIN, 0};
    if (poll(&watch, 1, deadline.millisecondsLeft()) > 0) return true;
  } while (deadline.millisecondsLeft() > 0);
  return false;
}

}  // namespace contextctl
