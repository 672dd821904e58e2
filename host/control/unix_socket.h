// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONTROL_UNIX_SOCKET_H
#define CPP2C_HOST_CONTROL_UNIX_SOCKET_H

#include <sys/types.h>

#include <string>
#include <utility>

// A listening Unix socket that only its owner may connect to. Its file goes with it, unless
// another one has taken its place.
class UnixSocket {
 public:
  // Takes the place of a socket at which nobody listens any more. Throws StartError if somebody does, if
  // there is a file of another kind, or if the socket cannot be made.
  explicit UnixSocket(std::string path);
  ~UnixSocket();
  UnixSocket(const UnixSocket&) = delete;
  UnixSocket& operator=(const UnixSocket&) = delete;

  int fd() const { return fd_; }

 private:
  const std::string path_;
  int fd_ = -1;
  std::pair<dev_t, ino_t> file_;
};

#endif
