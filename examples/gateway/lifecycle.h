// SPDX-License-Identifier: MIT
// The main program's part in the lifecycle: it prints each step that all modules have taken.
#ifndef GATEWAY_LIFECYCLE_H
#define GATEWAY_LIFECYCLE_H

// Comes between c_context_init() and c_context_load(). Returns 0 or a result code.
int lifecycle_follow(void);

#endif
