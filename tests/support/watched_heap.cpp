// SPDX-License-Identifier: MIT
#include "tests/support/watched_heap.h"

#include <cstdlib>
#include <new>

namespace watched_heap {

void (*on_delete)(void* block) = nullptr;
long news_before_failure = -1;

}  // namespace watched_heap

void* operator new(std::size_t size) {
  if (watched_heap::news_before_failure >= 0 && watched_heap::news_before_failure-- == 0)
    throw std::bad_alloc();
  void* block = std::malloc(size != 0 ? size : 1);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void operator delete(void* block) noexcept {
  if (watched_heap::on_delete != nullptr) watched_heap::on_delete(block);
  std::free(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept {
  operator delete(block);
}
