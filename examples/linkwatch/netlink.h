// SPDX-License-Identifier: MIT
// The socket on which the kernel reports its interfaces.
#ifndef LINKWATCH_NETLINK_H
#define LINKWATCH_NETLINK_H

#include <stddef.h>
#include <stdint.h>
#include <sys/types.h>

// What a dump contains.
enum netlink_dump { DUMP_NONE, DUMP_LINKS, DUMP_ADDRESSES };

// Opens a non-blocking socket that receives all changes of links and IPv4 addresses. Stores the socket's
// port, which identifies the answers to its requests. Returns the socket, or -1 with errno set.
int netlink_open(uint32_t* port);

// Requests all links or all addresses, one dump at a time. Returns 0, or -1 with errno set.
int netlink_request(int fd, enum netlink_dump dump, uint32_t sequence);

// Receives one datagram from the kernel. Returns its size, 0 if none is waiting, or -1 with errno set:
// ENOBUFS if messages were lost, EMSGSIZE if a datagram was too long and was dropped.
ssize_t netlink_receive(int fd, void* buffer, size_t size);

#endif
