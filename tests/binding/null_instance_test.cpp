// SPDX-License-Identifier: MIT
// A context library whose "getInstance" returns null.
#include <gtest/gtest.h>

#include "binding/dll_mgr.h"
#include "include_c"
#include "tests/binding/context_libraries/entry_counts.h"
#include "tests/support/printed_text.h"

namespace {

TEST(NullInstanceTest, InitIsNotInitialised) {
  PrintedText printed;
  EXPECT_EQ(c_context_init(0, 0), -1022);
  EXPECT_EQ(printed.standardError(), "");
  EXPECT_EQ(printed.standardOutput(), "");
  c_context_deinit();
}

TEST(NullInstanceTest, EachCallRequestsTheInstanceAgain) {
  entries.obtained = 0;
  getContext();
  EXPECT_EQ(c_context_load(), 0);
  EXPECT_EQ(c_loop_run(), 0);
  EXPECT_EQ(entries.obtained, 3);
  releaseContext(nullptr);
}

}  // namespace
