// SPDX-License-Identifier: MIT
// A product that runs out of memory while it opens its modules.
#include <new>
#include <string>

#include <gtest/gtest.h>

#include "tests/boot/recording_product.h"
#include "tests/support/opened_library.h"
#include "tests/support/watched_heap.h"

namespace {

// Returns whether loadModules() has thrown std::bad_alloc.
bool failsToLoad(RecordingProduct& product, long allocation) {
  watched_heap::news_before_failure = allocation;
  try {
    product.loadModules();
  } catch (const std::bad_alloc&) {
    return true;
  }
  watched_heap::news_before_failure = -1;
  return false;
}

// The module is a static object of its library, which allocates nothing.
TEST(ProductAllocationTest, LibraryThatCannotBeStoredIsClosed) {
  RecordingProduct product({QUIET_MODULE});
  long allocation = 0;
  for (; failsToLoad(product, allocation); allocation++) {
    EXPECT_TRUE(product.modules.empty()) << allocation;
    EXPECT_FALSE(OpenedLibrary::isLoaded(QUIET_MODULE)) << allocation;
    product.libraries.clear();
  }
  EXPECT_GT(allocation, 2);
  EXPECT_EQ(product.modules.size(), 1U);
}

}  // namespace
