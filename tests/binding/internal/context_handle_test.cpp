// SPDX-License-Identifier: MIT
// The opened context library, `g_context_library`.
#include "binding/globals.h"
#include "tests/support/recording_test.h"

namespace {

using ContextHandleTest = UnopenedContextTest;

TEST_F(ContextHandleTest, StartsNull) {
  EXPECT_EQ(g_context_library, nullptr);
}

TEST_F(ContextHandleTest, IsKeptBetweenCalls) {
  getContext();
  DllMgr* library = g_context_library;
  ASSERT_NE(library, nullptr);
  getContext();
  EXPECT_EQ(g_context_library, library);
}

TEST_F(ContextHandleTest, IsKeptIfTheLibraryReturnsNoContext) {
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

TEST_F(ContextHandleTest, IsSetWhileTheLibraryIsReleased) {
  DllMgr* during = nullptr;
  getContext();
  DllMgr* library = g_context_library;
  log.on_call = [&during](const std::string&) { during = g_context_library; };
  releaseContext(nullptr);
  EXPECT_EQ(during, library);
}

}  // namespace
