// SPDX-License-Identifier: MIT
// Returns no instance.
#include "tests/contextctl/inspect/libraries/entry_points.h"

void* getInstance(void* context) {
  (void)context;
  return 0;
}

void relInstance(void* instance) {
  (void)instance;
}
