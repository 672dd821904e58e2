// SPDX-License-Identifier: MIT
// Notifies the modules when the program receives SIGHUP; they then check all interfaces again.
#ifndef GATEWAY_NOTICES_H
#define GATEWAY_NOTICES_H

// On failure, prints the reason and returns a result code. Returns 0 otherwise.
int notices_start(void);
void notices_stop(void);

#endif
