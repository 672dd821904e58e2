// SPDX-License-Identifier: MIT
// Tells the modules to look at the interfaces anew when the program receives SIGHUP.
#ifndef GATEWAY_NOTICES_H
#define GATEWAY_NOTICES_H

// Returns 0, or a result code after saying why.
int notices_start(void);
void notices_stop(void);

#endif
