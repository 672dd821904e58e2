// SPDX-License-Identifier: MIT
// Refers to an undefined function, which it never calls.
#include "tests/binding/context_libraries/entry_counts.h"

EntryCounts entries;

extern "C" int definedNowhere();

void* getInstance(void* caller) {
  if (caller == &entries) entries.obtained = definedNowhere();
  return &entries;
}

void relInstance(void* /*instance*/) {}
