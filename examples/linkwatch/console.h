// SPDX-License-Identifier: MIT
// Lines from standard input, for trying a service out.
#ifndef LINKWATCH_CONSOLE_H
#define LINKWATCH_CONSOLE_H

// Hands each line to `obey`, which may change it, until standard input ends. Returns 0 or a result code.
int console_start(void (*obey)(char* line));
void console_stop(void);

#endif
