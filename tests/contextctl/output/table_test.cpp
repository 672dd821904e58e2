// SPDX-License-Identifier: MIT
#include "contextctl/output/table.h"

#include <sstream>

#include <gtest/gtest.h>

namespace contextctl {
namespace {

TEST(TableTest, ColumnsAreAsWideAsTheirWidestText) {
  std::ostringstream out;
  Table table({"A", "LONG", "C"});
  table.add({"wide", "b", "c"});
  table.print(out);
  EXPECT_EQ(out.str(), "A     LONG  C\nwide  b     c\n");
}

TEST(TableTest, WidthIsInCharacters) {
  std::ostringstream out;
  Table table({"AB", "C"});
  table.add({"\xc3\xa9", "c"});
  table.print(out);
  EXPECT_EQ(out.str(), "AB  C\n\xc3\xa9   c\n");
}

TEST(TableTest, LinesHaveNoTrailingBlanks) {
  std::ostringstream out;
  Table table({"A", "B"});
  table.add({"a", ""});
  table.print(out);
  EXPECT_EQ(out.str(), "A  B\na\n");
}

}  // namespace
}  // namespace contextctl
