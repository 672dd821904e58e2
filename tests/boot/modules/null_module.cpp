// SPDX-License-Identifier: MIT
// A library whose "getInstance" returns null.
#include "include_c"

extern "C" {

CPP2C_API void* getInstance(void* caller);
CPP2C_API void relInstance(void* instance);

CPP2C_API int null_module_asked = 0;
CPP2C_API int null_module_released = 0;

void* getInstance(void* /*caller*/) {
  ++null_module_asked;
  return nullptr;
}

void relInstance(void* /*instance*/) {
  ++null_module_released;
}
}
