// SPDX-License-Identifier: MIT
// The setting that writes diagnostics of the framework and the modules to the log.
#ifndef GATEWAY_DEBUG_H
#define GATEWAY_DEBUG_H

// Applies the setting and observes it. Returns 0 or a result code.
int debug_start(void);
void debug_stop(void);

#endif
