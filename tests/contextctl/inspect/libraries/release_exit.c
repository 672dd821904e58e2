// SPDX-License-Identifier: MIT
// Prints to standard output and ends the process.
#include <stdio.h>
#include <unistd.h>

#include "tests/contextctl/inspect/libraries/entry_points.h"

EXPORTED void nameless(void);

void nameless(void) {}

typedef void (*Operation)(void);

static const Operation kTable[10] = {
    nameless, nameless, nameless, nameless, nameless, nameless, nameless, nameless, nameless, nameless,
};

static const struct { const Operation* table; } kInstance = {kTable};

void* getInstance(void* context) {
  (void)context;
  puts("hello");
  fflush(stdout);
  return (void*)&kInstance;
}

void relInstance(void* instance) {
  (void)instance;
  _exit(7);
}
