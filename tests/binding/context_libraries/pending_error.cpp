// SPDX-License-Identifier: MIT
// Its "relInstance" causes an error of the dynamic loader and does not fetch it with dlerror().
#include <dlfcn.h>

#include "tests/binding/context_libraries/entry_counts.h"

EntryCounts entries;

void* getInstance(void* /*caller*/) {
  return &entries;
}

void relInstance(void* /*instance*/) {
  dlopen("libthere-is-no-such-library.so", RTLD_LAZY);
}
