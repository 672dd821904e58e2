// SPDX-License-Identifier: MIT
// A context library without "getInstance".
#include <gtest/gtest.h>

#include "binding/dll_mgr.h"
#include "include_c"
#include "tests/binding/context_libraries/entry_counts.h"
#include "tests/support/printed_text.h"

namespace {

TEST(NoGetInstanceTest, GetContextReturnsNull) {
  PrintedText printed;
  EXPECT_EQ(getContext(), nullptr);
  EXPECT_EQ(getContext(), nullptr);
  EXPECT_EQ(printed.standardError(), "");
  EXPECT_EQ(printed.standardOutput(), "");
}

TEST(NoGetInstanceTest, InitIsNotInitialised) {
  EXPECT_EQ(c_context_init(0, 0), -1022);
  c_context_deinit();
}

TEST(NoGetInstanceTest, ReleasePassesNullToTheLibrary) {
  entries.last_released = &entries;
  getContext();
  releaseContext(nullptr);
  EXPECT_EQ(entries.last_released, nullptr);
}

}  // namespace
