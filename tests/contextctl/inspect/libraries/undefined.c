// SPDX-License-Identifier: MIT
// The entry points are called, but not defined.
#include "tests/contextctl/inspect/libraries/entry_points.h"

EXPORTED void use(void);

void use(void) {
  relInstance(getInstance(0));
}
