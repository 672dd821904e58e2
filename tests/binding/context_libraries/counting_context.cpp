// SPDX-License-Identifier: MIT
// Has both entry points and no peculiarity.
#include "tests/binding/context_libraries/entry_counts.h"

namespace {

int instance_of_library;

}  // namespace

EntryCounts entries = {0, 0, nullptr, nullptr, &instance_of_library};

void* getInstance(void* caller) {
  ++entries.obtained;
  entries.last_caller = caller;
  return entries.next_instance;
}

void relInstance(void* instance) {
  ++entries.released;
  entries.last_released = instance;
}
