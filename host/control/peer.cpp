// SPDX-License-Identifier: MIT
#include "host/control/peer.h"

#include <sys/socket.h>
#include <unistd.h>

bool mayControl(uid_t user, uid_t owner) {
  return user == owner || user == 0;
}

bool peerMayControl(int socket) {
  ucred peer{};
  socklen_t size = sizeof peer;
  return getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && mayControl(peer.uid, geteuid());
}
