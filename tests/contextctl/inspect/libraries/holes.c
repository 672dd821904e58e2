// SPDX-License-Identifier: MIT
// An instance with a virtual table of C functions. One entry is a pure virtual function, one is not code.
#include "tests/contextctl/inspect/libraries/entry_points.h"

EXPORTED void __cxa_pure_virtual(void);
EXPORTED void nameless(void);

void __cxa_pure_virtual(void) {}
void nameless(void) {}

typedef void (*Operation)(void);

static const Operation kTable[10] = {
    nameless, nameless, nameless, nameless, __cxa_pure_virtual, nameless, 0, nameless, nameless, nameless,
};

static const struct { const Operation* table; } kInstance = {kTable};

void* getInstance(void* context) {
  (void)context;
  return (void*)&kInstance;
}

void relInstance(void* instance) {
  (void)instance;
}
