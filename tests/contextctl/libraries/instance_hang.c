// SPDX-License-Identifier: MIT
#include <unistd.h>

#include "tests/contextctl/libraries/entry_points.h"

void* getInstance(void* context) {
  for (;;) pause();
  return context;
}

void relInstance(void* instance) {
  (void)instance;
}
