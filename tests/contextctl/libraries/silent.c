// SPDX-License-Identifier: MIT
// Gives no instance.
#include "tests/contextctl/libraries/entry_points.h"

void* getInstance(void* context) {
  (void)context;
  return 0;
}

void relInstance(void* instance) {
  (void)instance;
}
