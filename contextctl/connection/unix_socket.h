// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_CONNECTION_UNIX_SOCKET_H
#define CPP2C_CONTEXTCTL_CONNECTION_UNIX_SOCKET_H

#include <string>

namespace contextctl {

// Throws Failure if the user has not named a socket, or if the name is too long for one.
void requireSocketName(const std::string& path);

// Throws Failure if the program that listens at `path`, to which `fd` is connected, runs as another user than
// this process and root: requests may contain passwords.
void requireTrustedPeer(int fd, const std::string& path);

}  // namespace contextctl

#endif
