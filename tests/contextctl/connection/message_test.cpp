// SPDX-License-Identifier: MIT
#include "contextctl/connection/message.h"

#include <gtest/gtest.h>

#include "contextctl/system/failure.h"

namespace contextctl {
namespace {

TEST(MessageTest, PlainMembersBecomeStrings) {
  const Record record = readAnswer(R"({"s":"a","i":-7,"d":0.5,"b":true,"n":null,"o":{},"a":[]})").record;
  EXPECT_EQ(record.value("s"), "a");
  EXPECT_EQ(record.value("i"), "-7");
  EXPECT_EQ(record.value("d"), "0.5");
  EXPECT_EQ(record.value("b"), "true");
  EXPECT_EQ(record.value("n"), std::nullopt);
  EXPECT_EQ(record.text("n"), "");
  EXPECT_THROW(record.value("o"), Failure);
  EXPECT_THROW(record.value("a"), Failure);
}

TEST(MessageTest, NumbersAreRead) {
  const Record record = readAnswer(R"({"i":-7,"d":1.5e3,"s":"2","t":"2x","e":"","n":null})").record;
  EXPECT_EQ(record.number("i"), -7);
  EXPECT_EQ(record.number("d"), 1500);
  EXPECT_EQ(record.number("s"), 2);
  for (const char* name : {"t", "e", "n", "missing"}) EXPECT_THROW(record.number(name), Failure) << name;
}

TEST(MessageTest, ArraysAreReadByTheKindOfTheirItems) {
  const Answer answer = readAnswer(R"({"a":[{"x":1},"s",2,[],{"x":3}],"b":"no array"})");
  ASSERT_EQ(answer.objectArray("a").size(), 2u);
  EXPECT_EQ(answer.objectArray("a")[1].text("x"), "3");
  EXPECT_EQ(answer.stringArray("a"), std::vector<std::string>{"s"});
  EXPECT_THROW(answer.objectArray("b"), Failure);
  EXPECT_THROW(answer.stringArray("b"), Failure);
}

TEST(MessageTest, OnlyAnObjectIsAnAnswer) {
  for (const char* text : {"", "[]", "1", "{", "{}x", "{\"a\":\"\xff\"}"})
    EXPECT_THROW(readAnswer(text), Failure);
}

TEST(MessageTest, ARefusalHasAnErrorThatIsAString) {
  EXPECT_EQ(readRefusal(R"({"error":"no"})"), "no");
  for (const char* text : {"", "{}", R"({"error":1})", R"(["error"])", "nonsense"})
    EXPECT_EQ(readRefusal(text), std::nullopt) << text;
}

TEST(MessageTest, EveryKindOfValueIsWritten) {
  EXPECT_EQ(writeObject({{"n", nullptr}, {"s", "a\"\n"}, {"i", std::int64_t{-5}}, {"b", true}}),
            R"({"n":null,"s":"a\"\n","i":-5,"b":true})");
  EXPECT_EQ(writeArray("x", {{{"a", true}}, {}}), R"({"x":[{"a":true},{}]})");
  EXPECT_EQ(writeArray("x", {}), R"({"x":[]})");
}

}  // namespace
}  // namespace contextctl
