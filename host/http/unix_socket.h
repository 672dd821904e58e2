// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_HTTP_UNIX_SOCKET_H
#define CPP2C_HOST_HTTP_UNIX_SOCKET_H

#include <sys/types.h>

#include <string>
#include <utility>

namespace host {

// A listening Unix socket that only its owner and root may connect to. The destructor removes its file,
// unless another file has taken that name since.
class UnixSocket {
 public:
  // Replaces a socket file that no process listens on. Throws util::Error if a process does, if
  // there is a file of another kind, or if the socket cannot be created.
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

// Whether a user may control a program that runs as `owner`: only the same user and root may.
bool mayControl(uid_t user, uid_t owner);

// Whether the process at the other end of a connected Unix socket may control this process.
bool peerMayControl(int socket);

}  // namespace host

#endif
