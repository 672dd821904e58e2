// SPDX-License-Identifier: MIT
// Keeps the table of interfaces in sync with the kernel.
//
// The kernel sends a message for each change. A dump of all links or all addresses gives what a single
// message does not: the state at the start, lost messages, and which address of an interface is the first.
#ifndef LINKWATCH_MONITOR_H
#define LINKWATCH_MONITOR_H

// Opens the socket, watches it on the loop and requests all links and addresses. Returns 0 or a result code.
int monitor_start(void);
void monitor_stop(void);

// Reads all links and addresses again, for example because other interfaces are to be watched.
void monitor_resync(void);

#endif
