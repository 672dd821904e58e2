// SPDX-License-Identifier: MIT
// A minimal context or module library.
#include "tests/contextctl/inspect/libraries/entry_points.h"

void* getInstance(void* context) {
  return context;
}

void relInstance(void* instance) {
  (void)instance;
}
