// SPDX-License-Identifier: MIT
// The commands of the product's console:
//
//   get NAME TYPE         prints the value of a leaf of the configuration tree
//   set NAME TYPE VALUE   changes it and saves the configuration
#ifndef GATEWAY_COMMANDS_H
#define GATEWAY_COMMANDS_H

// Executes one line; modifies it.
void commands_obey(char* line);

#endif
