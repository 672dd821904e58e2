// SPDX-License-Identifier: MIT
// A library without "getInstance". It must not depend on a library that has one: dlsym() would find it.
#include "include_c"

extern "C" {

CPP2C_API void relInstance(void* instance);

CPP2C_API int no_get_instance_released = 0;

void relInstance(void* /*instance*/) {
  ++no_get_instance_released;
}
}
