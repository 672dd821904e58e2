// SPDX-License-Identifier: MIT
// The command that runs at each change of an address. It is suspended after repeated failures.
#ifndef GATEWAY_ADDRESS_HOOK_H
#define GATEWAY_ADDRESS_HOOK_H

#include "records.h"

// Runs the hook with the name, the previous and the current address of the interface; "none" stands for no
// address.
void hook_run(const struct record* record, const char* previous);

// Allows a suspended hook to run again.
void hook_resume(void);

#endif
