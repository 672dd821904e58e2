// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONTROL_PEER_H
#define CPP2C_HOST_CONTROL_PEER_H

#include <sys/types.h>

// Whether a user may control a program that runs as `owner`: the same user and root may.
bool mayControl(uid_t user, uid_t owner);

// Whether the process at the other end of a connected Unix socket may control this one.
bool peerMayControl(int socket);

#endif
