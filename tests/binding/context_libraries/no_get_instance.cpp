// SPDX-License-Identifier: MIT
// Has no "getInstance".
#include "tests/binding/context_libraries/entry_counts.h"

EntryCounts entries;

void relInstance(void* instance) {
  ++entries.released;
  entries.last_released = instance;
}
