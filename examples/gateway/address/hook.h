// SPDX-License-Identifier: MIT
// The command that is run on each change of an address. It is suspended when it keeps failing.
#ifndef GATEWAY_ADDRESS_HOOK_H
#define GATEWAY_ADDRESS_HOOK_H

#include "records.h"

// Runs the hook with the interface's name and its addresses before and now, each "none" if there is none.
void hook_run(const struct record* record, const char* previous);

// Lets a suspended hook run again.
void hook_resume(void);

#endif
