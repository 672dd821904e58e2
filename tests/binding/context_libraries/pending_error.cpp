// SPDX-License-Identifier: MIT
// Its "relInstance" leaves an error of the dynamic loader behind that nobody has asked for.
#include <dlfcn.h>

#include "tests/binding/context_libraries/entry_counts.h"

EntryCounts entries;

void* getInstance(void* /*caller*/) {
  return &entries;
}

void relInstance(void* /*instance*/) {
  dlopen("libthere-is-no-such-library.so", RTLD_LAZY);
}
