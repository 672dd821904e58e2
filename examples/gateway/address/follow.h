// SPDX-License-Identifier: MIT
// Keeps the records in step with the interfaces that the configuration tree shows.
#ifndef GATEWAY_ADDRESS_FOLLOW_H
#define GATEWAY_ADDRESS_FOLLOW_H

// Follows the interfaces from now on; what is there already is left to follow_refresh().
void follow_start(void);
void follow_stop(void);

// Looks at every interface anew.
void follow_refresh(void);

#endif
