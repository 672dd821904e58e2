// SPDX-License-Identifier: MIT
// The least that is a context or module library.
#include "tests/contextctl/libraries/entry_points.h"

void* getInstance(void* context) {
  return context;
}

void relInstance(void* instance) {
  (void)instance;
}
