// SPDX-License-Identifier: MIT
#include "context/one_line.h"

#include <string>

#include <gtest/gtest.h>

namespace {

using namespace std::string_literals;

TEST(OneLineTest, PlainTextStaysAsItIs) {
  EXPECT_EQ(oneLine("all is well: 50 %\\"), "all is well: 50 %\\");
}

TEST(OneLineTest, LineFeedsAtTheEndAreDropped) {
  EXPECT_EQ(oneLine("left\n\n"), "left");
}

TEST(OneLineTest, LineFeedInsideIsSpelledOut) {
  EXPECT_EQ(oneLine("one\ntwo"), "one\\ntwo");
}

TEST(OneLineTest, OtherControlCharactersAreSpelledOut) {
  EXPECT_EQ(oneLine("\r\t\x1b[31m\x7f\0"s), "\\r\\t\\x1b[31m\\x7f\\x00");
}

TEST(OneLineTest, Utf8StaysAsItIs) {
  EXPECT_EQ(oneLine("Gr\xc3\xbc\xc3\x9f"), "Gr\xc3\xbc\xc3\x9f");
}

TEST(OneLineTest, EmptyTextStaysEmpty) {
  EXPECT_EQ(oneLine(""), "");
}

}  // namespace
