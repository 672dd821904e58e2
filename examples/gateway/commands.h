// SPDX-License-Identifier: MIT
// What can be asked of the product on its console:
//
//   get NAME TYPE         prints the value of a leaf of the configuration tree
//   set NAME TYPE VALUE   changes it and saves the configuration
#ifndef GATEWAY_COMMANDS_H
#define GATEWAY_COMMANDS_H

// Carries out one line, and overwrites it.
void commands_obey(char* line);

#endif
