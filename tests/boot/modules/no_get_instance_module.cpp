// SPDX-License-Identifier: MIT
// A library without "getInstance". It depends on no other that has one, for the loader would find that.
#include "include_c"

extern "C" {

CPP2C_API void relInstance(void* instance);

CPP2C_API int no_get_instance_released = 0;

void relInstance(void* /*instance*/) {
  ++no_get_instance_released;
}
}
