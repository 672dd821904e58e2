// SPDX-License-Identifier: MIT
// Keeps the records in sync with the interfaces in the configuration tree.
#ifndef GATEWAY_ADDRESS_FOLLOW_H
#define GATEWAY_ADDRESS_FOLLOW_H

// Starts to observe the interfaces. follow_refresh() handles those that exist already.
void follow_start(void);
void follow_stop(void);

// Checks all interfaces again.
void follow_refresh(void);

#endif
