// SPDX-License-Identifier: MIT
// Keeps the table of interfaces in step with the kernel.
//
// The kernel tells of each change. Whatever cannot be known from one message alone is read anew in a dump of
// all links or all addresses: the state at the start, news that were lost, which address is the first.
#ifndef LINKWATCH_MONITOR_H
#define LINKWATCH_MONITOR_H

// Opens the socket, watches it on the loop and asks for everything. Returns 0 or a result code.
int monitor_start(void);
void monitor_stop(void);

// Reads everything anew, for example because other interfaces are to be watched.
void monitor_resync(void);

#endif
