// SPDX-License-Identifier: MIT
// The object above the instances, "Gateway.Address.", whose leaves apply to all of them.
#ifndef GATEWAY_ADDRESS_OWNER_H
#define GATEWAY_ADDRESS_OWNER_H

#include <stdint.h>

enum { COMMAND_SIZE = 256 };

// Reads a command; an empty command means none. If it is missing or too long, logs an error and returns an
// empty command.
void owner_read_command(const char* instance, const char* leaf, char command[COMMAND_SIZE]);

// Increments the number of address changes.
void owner_count_change(const char* instance);

#endif
