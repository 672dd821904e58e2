// SPDX-License-Identifier: MIT
// Its "getInstance" returns null.
#include "tests/binding/context_libraries/entry_counts.h"

EntryCounts entries;

void* getInstance(void* caller) {
  ++entries.obtained;
  entries.last_caller = caller;
  return nullptr;
}

void relInstance(void* instance) {
  ++entries.released;
  entries.last_released = instance;
}
