// SPDX-License-Identifier: MIT
// The one opened context library.
#include "binding/globals.h"
#include "tests/support/recording_test.h"

namespace {

using ContextHandleTest = UnopenedContextTest;

TEST_F(ContextHandleTest, StartsNull) {
  EXPECT_EQ(g_context_library, nullptr);
}

TEST_F(ContextHandleTest, IsKeptFromOneCallToTheNext) {
  getContext();
  DllMgr* library = g_context_library;
  ASSERT_NE(library, nullptr);
  getContext();
  EXPECT_EQ(g_context_library, library);
}

TEST_F(ContextHandleTest, IsKeptWhenTheLibraryYieldsNoContext) {
  proxy.instance = nullptr;
  getContext();
  DllMgr* library = g_context_library;
  ASSERT_NE(library, nullptr);
  getContext();
  EXPECT_EQ(g_context_library, library);
}

TEST_F(ContextHandleTest, IsNullAfterARelease) {
  getContext();
  releaseContext(nullptr);
  EXPECT_EQ(g_context_library, nullptr);
  releaseContext(nullptr);
  EXPECT_EQ(g_context_library, nullptr);
}

TEST_F(ContextHandleTest, ReleaseTakesPlaceWhileItIsStillSet) {
  DllMgr* during = nullptr;
  getContext();
  DllMgr* library = g_context_library;
  log.on_call = [&during](const std::string&) { during = g_context_library; };
  releaseContext(nullptr);
  EXPECT_EQ(during, library);
}

}  // namespace
