// SPDX-License-Identifier: MIT
// A service that keeps one instance in the configuration tree for each network interface of the machine.
#ifndef LINKWATCH_LINKWATCH_H
#define LINKWATCH_LINKWATCH_H

// Starts the service, which then runs on the loop. Call it after c_context_init(). On failure, prints the
// reason, leaves nothing started and returns a negative result code.
int linkwatch_start(void);

// Stops the service and frees its memory; allowed even if it was not started. Call it before
// c_context_deinit().
void linkwatch_stop(void);

#endif
