// SPDX-License-Identifier: MIT
// The entry points are called, but they are somewhere else.
#include "tests/contextctl/libraries/entry_points.h"

EXPORTED void use(void);

void use(void) {
  relInstance(getInstance(0));
}
