// SPDX-License-Identifier: MIT
// The main program as master observer: prints each step that all modules have completed.
#ifndef GATEWAY_LIFECYCLE_H
#define GATEWAY_LIFECYCLE_H

// Call this between c_context_init() and c_context_load(). Returns 0 or a result code.
int lifecycle_follow(void);

#endif
