// SPDX-License-Identifier: MIT
#include "binding/value_type.h"

#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

namespace {

TEST(ValueKindTest, EachTypeHasItsKind) {
  for (const char* type : {"str", "ipaddr", "macaddr", "pwd", "base64", "datetime"}) {
    EXPECT_EQ(valueKind(type), ValueKind::kText) << type;
  }
  EXPECT_EQ(valueKind("int"), ValueKind::kWord);
  EXPECT_EQ(valueKind("uint"), ValueKind::kWord);
  EXPECT_EQ(valueKind("bool"), ValueKind::kFlag);
}

TEST(ValueKindTest, NameComparisonIsExact) {
  for (const char* type : {"", "Int", "INT", "in", "ints", " int", "string", "boolean", "ip", "hex"}) {
    EXPECT_EQ(valueKind(type), ValueKind::kUnknown) << '"' << type << '"';
  }
}

TEST(WordTextTest, IsDecimalWithASign) {
  EXPECT_STREQ(WordText(0).c_str(), "0");
  EXPECT_STREQ(WordText(-5).c_str(), "-5");
  EXPECT_STREQ(WordText(std::numeric_limits<std::int32_t>::max()).c_str(), "2147483647");
  EXPECT_STREQ(WordText(std::numeric_limits<std::int32_t>::min()).c_str(), "-2147483648");
}

}  // namespace
