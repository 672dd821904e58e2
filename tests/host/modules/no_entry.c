// SPDX-License-Identifier: MIT
// A library that is no module library.
#include "include_c"

CPP2C_API int somethingElse(void);

int somethingElse(void) {
  return 0;
}
