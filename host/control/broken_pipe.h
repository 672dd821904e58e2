// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONTROL_BROKEN_PIPE_H
#define CPP2C_HOST_CONTROL_BROKEN_PIPE_H

// Makes SIGPIPE harmless, by which the system ends a process that writes to a client who is gone: libevent
// cannot write without it. A program that has chosen another action for the signal keeps that.
class BrokenPipe {
 public:
  BrokenPipe();
  ~BrokenPipe();
  BrokenPipe(const BrokenPipe&) = delete;
  BrokenPipe& operator=(const BrokenPipe&) = delete;
};

#endif
