// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_CONNECTION_UNIX_SOCKET_H
#define CPP2C_CONTEXTCTL_CONNECTION_UNIX_SOCKET_H

#include <sys/types.h>
#include <time.h>

#include <optional>
#include <string>
#include <tuple>

namespace contextctl {

// Throws Failure if the user has not named a socket, or if the name is too long for one.
void requireSocketName(const std::string& path);

// Throws Failure if the program that listens at `path`, to which `fd` is connected, runs as another user than
// this process and root: requests may contain passwords.
void requireTrustedPeer(int fd, const std::string& path);

// The program that listens at a path.
class Listener {
 public:
  explicit Listener(const std::string& path) : path_(path), identity_(identityAt(path)) {}

  // Waits until it has closed its socket: nobody, or another program, listens there. Throws Failure if that
  // takes longer than `seconds`.
  void waitForEnd(double seconds) const;

 private:
  using Identity = std::tuple<dev_t, ino_t, time_t, long>;  // the file of the socket and when it was created

  static std::optional<Identity> identityAt(const std::string& path);  // nullopt: nobody listens

  std::string path_;
  std::optional<Identity> identity_;
};

}  // namespace contextctl

#endif
