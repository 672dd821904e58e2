// SPDX-License-Identifier: MIT
// A context library without "relInstance".
#include <gtest/gtest.h>

#include "binding/dll_mgr.h"
#include "tests/binding/context_libraries/entry_counts.h"
#include "tests/support/printed_text.h"

namespace {

TEST(NoRelInstanceTest, ContextIsObtainedAgainAfterASilentRelease) {
  PrintedText printed;
  EXPECT_EQ(getContext(), entries.next_instance);
  const int obtained = entries.obtained;

  releaseContext(nullptr);
  EXPECT_EQ(printed.standardError(), "");
  EXPECT_EQ(printed.standardOutput(), "");
  EXPECT_EQ(getContext(), entries.next_instance);
  EXPECT_EQ(entries.obtained, obtained + 1);
}

}  // namespace
