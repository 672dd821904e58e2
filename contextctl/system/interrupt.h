// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_SYSTEM_INTERRUPT_H
#define CPP2C_CONTEXTCTL_SYSTEM_INTERRUPT_H

namespace contextctl {

// Turns Ctrl-C into something to wait for, so that a command that goes on until then ends in good order.
class Interrupt {
 public:
  Interrupt();
  ~Interrupt();
  Interrupt(const Interrupt&) = delete;
  Interrupt& operator=(const Interrupt&) = delete;

  int fd() const { return fd_; }    // readable once it has come
  bool wait(double seconds) const;  // true: it has come

 private:
  int fd_;
};

}  // namespace contextctl

#endif
