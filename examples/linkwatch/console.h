// SPDX-License-Identifier: MIT
// A console on standard input, for trying a service out.
#ifndef LINKWATCH_CONSOLE_H
#define LINKWATCH_CONSOLE_H

// Passes each line to `obey`, which may modify it, until standard input ends. Returns 0 or a result code.
int console_start(void (*obey)(char* line));
void console_stop(void);

#endif
