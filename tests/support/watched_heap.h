// SPDX-License-Identifier: MIT
// The heap of a test program that wants to see memory go, or to see it run out.
#ifndef CPP2C_TESTS_SUPPORT_WATCHED_HEAP_H
#define CPP2C_TESTS_SUPPORT_WATCHED_HEAP_H

namespace watched_heap {

// Called with each block before it is freed; null at first. May itself use the heap.
extern void (*on_delete)(void* block);

// The next operator new throws. Set back by it.
extern bool fail_next_new;

}  // namespace watched_heap

#endif
