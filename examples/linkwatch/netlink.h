// SPDX-License-Identifier: MIT
// The socket on which the kernel tells of its interfaces.
#ifndef LINKWATCH_NETLINK_H
#define LINKWATCH_NETLINK_H

#include <stddef.h>
#include <stdint.h>
#include <sys/types.h>

// What can be asked for in one dump.
enum netlink_dump { DUMP_NONE, DUMP_LINKS, DUMP_ADDRESSES };

// Opens a non-blocking socket that receives all news of links and IPv4 addresses.
// Stores the socket's port, by which answers to its own requests are recognised. Returns -1 with errno set.
int netlink_open(uint32_t* port);

// Asks for all links or all addresses. One dump at a time. Returns -1 with errno set.
int netlink_request(int fd, enum netlink_dump dump, uint32_t sequence);

// Receives one datagram from the kernel. Returns its size, 0 if there is none for now, -1 with errno set:
// ENOBUFS says that news were lost, EMSGSIZE that a datagram was too long and is gone.
ssize_t netlink_receive(int fd, void* buffer, size_t size);

#endif
