// SPDX-License-Identifier: MIT
// The setting that shows diagnostics of the framework and the modules in the log.
#ifndef GATEWAY_DEBUG_H
#define GATEWAY_DEBUG_H

// Applies the setting and follows it. Returns 0 or a result code.
int debug_start(void);
void debug_stop(void);

#endif
