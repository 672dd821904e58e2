// SPDX-License-Identifier: MIT
// Replaces operator new and delete, to observe deletions and to simulate failing allocations.
#ifndef CPP2C_TESTS_SUPPORT_WATCHED_HEAP_H
#define CPP2C_TESTS_SUPPORT_WATCHED_HEAP_H

namespace watched_heap {

// Called with each block before it is freed; initially null. It may use the heap itself.
extern void (*on_delete)(void* block);

// The number of calls of operator new that succeed before one throws. It then becomes negative: none fails.
extern long news_before_failure;

}  // namespace watched_heap

#endif
