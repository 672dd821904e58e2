// SPDX-License-Identifier: MIT
#include "contextctl/connection/unix_socket.h"

#include <errno.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "contextctl/system/failure.h"

namespace contextctl {
namespace {

constexpr size_t kLongestName = sizeof(sockaddr_un::sun_path) - 1;

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

}  // namespace contextctl
