// SPDX-License-Identifier: MIT
#include "util/text.h"

#include <string>

#include <gtest/gtest.h>

namespace {

using namespace std::string_literals;

TEST(StartsWithTest, ComparesThePrefixOnly) {
  EXPECT_TRUE(util::startsWith("Device.Mtu", "Device."));
  EXPECT_TRUE(util::startsWith("Device.Mtu", ""));
  EXPECT_FALSE(util::startsWith("Device.Mtu", "Mtu"));
  EXPECT_FALSE(util::startsWith("Dev", "Device."));
}

TEST(QuotedTest, PutsDoubleQuotesAroundTheText) {
  EXPECT_EQ(util::quoted("eth0"), "\"eth0\"");
  EXPECT_EQ(util::quoted(""), "\"\"");
}

TEST(PrintableTest, PlainTextIsUnchanged) {
  EXPECT_EQ(util::printable("a \\ \"b\" 50 % Gr\xc3\xbc\xc3\x9f"), "a \\ \"b\" 50 % Gr\xc3\xbc\xc3\x9f");
}

TEST(PrintableTest, EmptyTextIsUnchanged) {
  EXPECT_EQ(util::printable(""), "");
}

TEST(PrintableTest, ControlCharactersAreEscaped) {
  EXPECT_EQ(util::printable("\0\t\r\n\x1b[31m\x7f"s), "\\x00\\t\\r\\n\\x1b[31m\\x7f");
}

TEST(PrintableTest, ControlCharactersBeyondAsciiAreEscaped) {
  EXPECT_EQ(util::printable("\xc2\x80\xc2\x9b"
                            "2J\xc2\x9f\xc2\xa0"),
            "\\x80\\x9b2J\\x9f\xc2\xa0");
}

TEST(PrintableTest, OnlyControlCharactersAreEscaped) {
  EXPECT_EQ(util::printable("\x1f \x7e\x7f\x80"), "\\x1f ~\\x7f\x80");
  EXPECT_EQ(util::printable("\xc2\x7f\xc3\x80"), "\xc2\\x7f\xc3\x80");
}

TEST(PrintableTest, IncompleteCharacterIsUnchanged) {
  EXPECT_EQ(util::printable("\xc2"), "\xc2");
}

TEST(OneLineTest, LineFeedsAtTheEndAreDropped) {
  EXPECT_EQ(util::oneLine("left\n\n"), "left");
}

TEST(OneLineTest, LineFeedInsideIsEscaped) {
  EXPECT_EQ(util::oneLine("one\ntwo\n"), "one\\ntwo");
}

}  // namespace
