// SPDX-License-Identifier: MIT
#include <errno.h>
#include <stddef.h>
#include <stdlib.h>

#include "fail_call.h"

// The allocator of the C library.
void* allocated(size_t size) __asm__("__libc_malloc");
void* allocated_zeroed(size_t count, size_t size) __asm__("__libc_calloc");
void* allocated_again(void* block, size_t size) __asm__("__libc_realloc");
void* allocated_aligned(size_t alignment, size_t size) __asm__("__libc_memalign");

void* malloc(size_t size) {
  return fails(ALLOCATE) ? NULL : allocated(size);
}

void* calloc(size_t count, size_t size) {
  return fails(ALLOCATE) ? NULL : allocated_zeroed(count, size);
}

void* realloc(void* block, size_t size) {
  return fails(ALLOCATE) ? NULL : allocated_again(block, size);
}

void* aligned_alloc(size_t alignment, size_t size) {
  return fails(ALLOCATE) ? NULL : allocated_aligned(alignment, size);
}

int posix_memalign(void** block, size_t alignment, size_t size) {
  if (fails(ALLOCATE)) return ENOMEM;
  *block = allocated_aligned(alignment, size);
  return *block != NULL ? 0 : ENOMEM;
}
