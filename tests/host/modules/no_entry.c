// SPDX-License-Identifier: MIT
// A library without the entry point of a module.
#include "include_c"

CPP2C_API int somethingElse(void);

int somethingElse(void) {
  return 0;
}
