// SPDX-License-Identifier: MIT
// Replaces operator new and delete, to observe deletions and to simulate failing allocations.
#ifndef CPP2C_TESTS_SUPPORT_WATCHED_HEAP_H
#define CPP2C_TESTS_SUPPORT_WATCHED_HEAP_H

namespace watched_heap {

// Called with each block before it is freed; initially null. It may use the heap itself.
extern void (*on_delete)(void* block);

// If true, the next operator new throws and resets the flag.
extern bool fail_next_new;

}  // namespace watched_heap

#endif
