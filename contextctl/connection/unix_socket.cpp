// SPDX-License-Identifier: MIT
#include "contextctl/connection/unix_socket.h"

#include <errno.h>
#include <poll.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "contextctl/output/durations.h"
#include "contextctl/system/deadline.h"
#include "contextctl/system/failure.h"

namespace contextctl {
namespace {

constexpr size_t kLongestName = sizeof(sockaddr_un::sun_path) - 1;

// Assumes the listener if that is unknown.
bool isListening(const std::string& path) {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, kLongestName);
  const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  const bool refused = connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 &&
                       (errno == ECONNREFUSED || errno == ENOENT);
  close(fd);
  return !refused;
}

}  // namespace

void requireSocketName(const std::string& path) {
  if (path.empty()) {
    throw Failure(kExitUsage,
                  "no socket is named; pass --control PATH, or set CPP2C_CONTROL or XDG_RUNTIME_DIR");
  }
  if (path.size() > kLongestName) {
    throw Failure(kExitUsage,
                  path + ": the path of a socket has at most " + std::to_string(kLongestName) + " bytes");
  }
}

void requireTrustedPeer(int fd, const std::string& path) {
  ucred peer = {};
  socklen_t size = sizeof peer;
  if (getsockopt(fd, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0)
    throw Failure(kExitNoAnswer, "no context at " + path + ": " + strerror(errno));
  if (peer.uid == 0 || peer.uid == geteuid()) return;
  throw Failure(kExitNoAnswer, "the program at " + path + " runs as user " + std::to_string(peer.uid) +
                                   "; run contextctl as that user if you trust it");
}

std::optional<Listener::Identity> Listener::identityAt(const std::string& path) {
  struct stat status = {};
  if (stat(path.c_str(), &status) != 0 || !isListening(path)) return std::nullopt;
  return Identity(status.st_dev, status.st_ino, status.st_ctim.tv_sec, status.st_ctim.tv_nsec);
}

void Listener::waitForEnd(double seconds) const {
  constexpr int kInterval = 20;  // in milliseconds
  const Deadline deadline(seconds);
  while (identity_ && identityAt(path_) == identity_) {
    if (deadline.millisecondsLeft() == 0) {
      throw Failure(kExitNoAnswer,
                    "the program at " + path_ + " has not ended within " + secondsText(seconds));
    }
    poll(nullptr, 0, kInterval);
  }
}

}  // namespace contextctl
