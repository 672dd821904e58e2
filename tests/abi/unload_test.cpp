// SPDX-License-Identifier: MIT
// Opens, uses and closes the library at run time.
#include <gtest/gtest.h>

#include "tests/abi/runtime_library.h"
#include "tests/support/context_proxy.h"

namespace {

int observe(void* /*user*/, int /*id*/, const char* /*instance*/, int /*operation*/, const char* /*leaf*/) {
  return 0;
}

int receive(void* /*user*/, const char* /*event*/, const char* /*data*/, const char* /*source*/) {
  return 0;
}

void ready(void* /*user*/, short /*events*/, int /*value*/) {}

// Uses every kind of state in the library.
void use(const RuntimeLibrary& library) {
  library.context_init(0, 0);
  library.cfm_regist_observer(5, observe, nullptr);
  library.event_regist_observer("link", receive, nullptr);
  library.loop_add_fd(7, 1, ready, nullptr);
  library.dbc_add_userdata(5, "x", nullptr);
  void* module = library.module_regist(nullptr);
  library.module_unregist(module);
}

class UnloadTest : public testing::Test {
 protected:
  ContextProxy& proxy = renewContextProxy();
};

TEST_F(UnloadTest, ClosedLibraryIsUnmapped) {
  ASSERT_FALSE(RuntimeLibrary::isMapped());
  RuntimeLibrary library;
  ASSERT_TRUE(library);
  use(library);
  library.context_deinit();
  ASSERT_TRUE(RuntimeLibrary::isMapped());
  library.close();
  EXPECT_FALSE(RuntimeLibrary::isMapped());
}

TEST_F(UnloadTest, UnusedLibraryIsUnmapped) {
  RuntimeLibrary library;
  ASSERT_TRUE(library);
  library.close();
  EXPECT_FALSE(RuntimeLibrary::isMapped());
}

TEST_F(UnloadTest, OpeningTheLibraryDoesNotReachTheContext) {
  RuntimeLibrary library;
  ASSERT_TRUE(library);
  library.close();
  EXPECT_EQ(proxy.calls.take(), Calls());
}

TEST_F(UnloadTest, LibraryCanBeOpenedRepeatedly) {
  for (int round = 0; round < 3; ++round) {
    RuntimeLibrary library;
    ASSERT_TRUE(library);
    use(library);
    library.context_deinit();
  }
  EXPECT_FALSE(RuntimeLibrary::isMapped());
}

}  // namespace
