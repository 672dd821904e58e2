// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_HTTP_BROKEN_PIPE_H
#define CPP2C_HOST_HTTP_BROKEN_PIPE_H

namespace host {

// Keeps SIGPIPE from ending the process when libevent writes to a client that has closed its connection. If
// the program has set an action for the signal itself, that action stays.
class BrokenPipe {
 public:
  BrokenPipe();
  ~BrokenPipe();
  BrokenPipe(const BrokenPipe&) = delete;
  BrokenPipe& operator=(const BrokenPipe&) = delete;
};

}  // namespace host

#endif
