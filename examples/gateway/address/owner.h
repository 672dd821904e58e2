// SPDX-License-Identifier: MIT
// The object above an instance, "Gateway.Address.": its leaves hold for all instances.
#ifndef GATEWAY_ADDRESS_OWNER_H
#define GATEWAY_ADDRESS_OWNER_H

#include <stdint.h>

enum { COMMAND_SIZE = 256 };

// Reads a command. A missing one, or one too long to be taken whole, is logged and read as empty, which means
// none.
void owner_read_command(const char* instance, const char* leaf, char command[COMMAND_SIZE]);

// Adds one to the number of address changes.
void owner_count_change(const char* instance);

#endif
