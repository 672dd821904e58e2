// SPDX-License-Identifier: MIT
#include <unistd.h>

#include "tests/contextctl/inspect/libraries/entry_points.h"

void* getInstance(void* context) {
  for (;;) pause();
  return context;
}

void relInstance(void* instance) {
  (void)instance;
}
