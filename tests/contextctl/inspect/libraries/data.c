// SPDX-License-Identifier: MIT
// An entry point that is not a function.
#define EXPORTED __attribute__((visibility("default")))

EXPORTED int getInstance = 1;
EXPORTED int relInstance = 1;
