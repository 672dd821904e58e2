// SPDX-License-Identifier: MIT
#include "host/config/value_type.h"

#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace host {
namespace {

using namespace std::string_literals;

struct Row {
  std::string type;
  std::vector<std::string> good;
  std::vector<std::string> bad;
};

void PrintTo(const Row& row, std::ostream* stream) {
  *stream << row.type;
}

const Row kRows[] = {
    {"int",
     {"0", "-1", "007", "2147483647", "-2147483648"},
     {"", "2147483648", "-2147483649", "+1", " 1", "1 ", "1.0", "0x1", "abc", "99999999999999999999"}},
    {"uint",
     {"0", "1500", "4294967295", "-1", "-2147483648"},
     {"", "4294967296", "-2147483649", "+1", "1e3", "abc", "99999999999999999999"}},
    {"bool", {"true", "false", "1", "0"}, {"", "True", "yes", "2", " true", "truefalse"}},
    {"str", {"", "any text", "two\nlines", "\xff"}, {"cut\0short"s}},
    {"pwd", {"", "any text"}, {"cut\0short"s}},
    {"ipaddr",
     {"", "192.0.2.1", "0.0.0.0", "255.255.255.255", "::", "2001:db8::1", "::ffff:192.0.2.1"},
     {"192.0.2", "192.0.2.256", "192.0.2.1/24", "192.0.2.1 ", "localhost", "2001:db8::1::2", "192.0.2.1\0"s}},
    {"macaddr",
     {"", "00:1a:2B:3c:4D:5f"},
     {"00:1a:2b:3c:4d", "00:1a:2b:3c:4d:5f:60", "00-1a-2b-3c-4d-5f", "0:1a:2b:3c:4d:5ff",
      "0g:1a:2b:3c:4d:5f"}},
    {"base64",
     {"", "QQ==", "QUI=", "QUJD", "ab+/ab0="},
     {"Q", "QQ=", "Q===", "====", "QQ==QQ==", "QU-D", "QUJD\n"}},
    {"datetime",
     {"", "2024-02-29T23:59:59", "2023-12-31T00:00:00Z", "2000-02-29T00:00:00", "0001-01-01T00:00:00Z"},
     {"2023-02-29T00:00:00", "1900-02-29T00:00:00", "2023-04-31T00:00:00", "2023-13-01T00:00:00",
      "2023-00-01T00:00:00", "2023-01-00T00:00:00", "2023-01-01T24:00:00", "2023-01-01T00:60:00",
      "2023-01-01T00:00:60", "2023-01-01 00:00:00", "2023-1-1T0:0:0", "2023-01-01", "2023-01-01T00:00:00z",
      "2023-01-01T00:00:00ZZ", "202x-01-01T00:00:00"}},
};

class ValueTypeTest : public testing::TestWithParam<Row> {};

TEST_P(ValueTypeTest, ItsValuesFit) {
  for (const std::string& text : GetParam().good)
    EXPECT_TRUE(fits(*findValueType(GetParam().type), text)) << text;
}

TEST_P(ValueTypeTest, OtherTextsDoNotFit) {
  for (const std::string& text : GetParam().bad)
    EXPECT_FALSE(fits(*findValueType(GetParam().type), text)) << text;
}

TEST_P(ValueTypeTest, ItsInitialValueFits) {
  const ValueType& type = *findValueType(GetParam().type);
  EXPECT_TRUE(fits(type, type.initial));
}

TEST_P(ValueTypeTest, OnlyPasswordsAreSecret) {
  EXPECT_EQ(findValueType(GetParam().type)->secret, GetParam().type == "pwd");
}

INSTANTIATE_TEST_SUITE_P(All, ValueTypeTest, testing::ValuesIn(kRows),
                         [](const auto& row) { return row.param.type; });

TEST(ValueTypeNameTest, UnknownNameHasNoType) {
  EXPECT_EQ(findValueType("INT"), nullptr);
  EXPECT_EQ(findValueType(""), nullptr);
}

}  // namespace

}  // namespace host
