// SPDX-License-Identifier: MIT
// A library without entry points.
#include "tests/contextctl/inspect/libraries/entry_points.h"

EXPORTED int bare(void);

int bare(void) {
  return 1;
}
