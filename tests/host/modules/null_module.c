// SPDX-License-Identifier: MIT
// A module library whose entry point returns no module.
#include <stddef.h>

#include "include_c"

CPP2C_API void* getInstance(void* context);

void* getInstance(void* context) {
  (void)context;
  return NULL;
}
