// SPDX-License-Identifier: MIT
// A service that keeps one configuration object up to date for each network interface of the machine.
#ifndef LINKWATCH_LINKWATCH_H
#define LINKWATCH_LINKWATCH_H

// Starts the service. Comes after c_context_init(); the work is done on the loop. Returns 0, or a negative
// result code after saying why: then nothing has been started.
int linkwatch_start(void);

// Stops the service and frees all it has, started or not. Comes before c_context_deinit().
void linkwatch_stop(void);

#endif
