// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_SYSTEM_INTERRUPT_H
#define CPP2C_CONTEXTCTL_SYSTEM_INTERRUPT_H

namespace contextctl {

// Turns Ctrl-C into a file descriptor to wait for, so that the command can end cleanly.
class Interrupt {
 public:
  Interrupt();
  ~Interrupt();
  Interrupt(const Interrupt&) = delete;
  Interrupt& operator=(const Interrupt&) = delete;

  int fd() const { return fd_; }    // readable after Ctrl-C
  bool wait(double seconds) const;  // true: Ctrl-C; false: the time is over

 private:
  int fd_;
};

}  // namespace contextctl

#endif
