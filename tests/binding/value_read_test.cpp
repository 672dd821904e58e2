// SPDX-License-Identifier: MIT
// Reads of leaves.
#include <cstdint>
#include <cstring>
#include <string>

#include "tests/support/recording_test.h"

namespace {

constexpr const char* kTooLong = "context.debugOut('cpp2c', ' data length of string is tool small!')";

class ValueReadTest : public RecordingTest {
 protected:
  // Sets the leaf. Its node reports the length of `value`.
  void setLeaf(const std::string& type, const std::string& value) {
    setLeaf(type, value, static_cast<unsigned int>(value.size()));
  }

  void setLeaf(const std::string& type, const std::string& value, unsigned int length) {
    cfm.leaves["A.B"] = {type, value, length};
  }

  int read(const char* type, void* data, unsigned int data_len) {
    return c_cfm_get_value("A.B", type, data, data_len);
  }

  // Reads the leaf as text into the first `size` bytes of sixteen bytes 'x' and returns all sixteen.
  std::string readText(unsigned int size) {
    std::string buffer(16, 'x');
    EXPECT_EQ(read("str", buffer.data(), size), 0);
    return buffer;
  }

  template <typename Word>
  Word readWord(const char* type, const std::string& text) {
    Word word = 0x5a5a5a5a;
    setLeaf(type, text);
    EXPECT_EQ(read(type, &word, sizeof word), 0);
    return word;
  }
};

TEST_F(ValueReadTest, NodeOfATextIsReleasedAfterTheRead) {
  setLeaf("str", "abc");
  readText(16);
  EXPECT_EQ(calls(), Calls({"context.getCfm()", "cfm.getNode('A.B')", "node.getType()", "node.getLength()",
                            "node.getValue()", "cfm.releaseNode('A.B')"}));
}

TEST_F(ValueReadTest, NodeOfAWordOrFlagIsReleasedAfterTheRead) {
  const Calls way = {"context.getCfm()", "cfm.getNode('A.B')", "node.getType()", "node.getValue()",
                     "cfm.releaseNode('A.B')"};
  for (const char* type : {"int", "uint", "bool"}) {
    readWord<std::int32_t>(type, "1");
    EXPECT_EQ(calls(), way) << type;
  }
}

TEST_F(ValueReadTest, ShortTextIsPaddedUpToTheLastByte) {
  setLeaf("str", "abc");
  EXPECT_EQ(readText(8), std::string("abc\0\0\0\0xxxxxxxxx", 16));
}

TEST_F(ValueReadTest, EmptyTextClearsTheBufferUpToTheLastByte) {
  setLeaf("str", "");
  EXPECT_EQ(readText(4), std::string("\0\0\0xxxxxxxxxxxxx", 16));
}

TEST_F(ValueReadTest, TextAsLongAsTheBufferIsTruncatedWithoutAWarning) {
  setLeaf("str", "0123456789");
  EXPECT_EQ(readText(10), "012345678xxxxxxx");
  EXPECT_TRUE(context.diagnostics.empty());
}

TEST_F(ValueReadTest, TextOneShorterThanTheBufferIsNotTerminated) {
  setLeaf("str", "012345678");
  EXPECT_EQ(readText(10), "012345678xxxxxxx");
  EXPECT_TRUE(context.diagnostics.empty());
}

TEST_F(ValueReadTest, TextTwoShorterThanTheBufferIsTerminated) {
  setLeaf("str", "01234567");
  EXPECT_EQ(readText(10), std::string("01234567\0xxxxxxx", 16));
}

TEST_F(ValueReadTest, WarningPrecedesTheReadOfALongText) {
  setLeaf("str", "0123456789abcdefghij");
  EXPECT_EQ(readText(8), "0123456xxxxxxxxx");
  EXPECT_EQ(calls(), Calls({"context.getCfm()", "cfm.getNode('A.B')", "node.getType()", "node.getLength()",
                            kTooLong, "node.getValue()", "cfm.releaseNode('A.B')"}));
}

TEST_F(ValueReadTest, WarningDependsOnTheLengthReportedByTheNode) {
  setLeaf("str", "abc", 9);
  EXPECT_EQ(readText(8), std::string("abc\0\0\0\0xxxxxxxxx", 16));
  EXPECT_EQ(context.diagnostics.size(), 1U);
  setLeaf("str", "0123456789", 8);
  EXPECT_EQ(readText(8), "0123456xxxxxxxxx");
  EXPECT_EQ(context.diagnostics.size(), 1U);
}

TEST_F(ValueReadTest, LengthsAreComparedUnsigned) {
  setLeaf("str", "abc", 0xffffffff);
  readText(8);
  EXPECT_EQ(context.diagnostics.size(), 1U);
}

TEST_F(ValueReadTest, BufferOfOneByteIsNotWritten) {
  setLeaf("str", "abc");
  EXPECT_EQ(readText(1), std::string(16, 'x'));
}

TEST_F(ValueReadTest, TextEndsAtAnEmbeddedNul) {
  setLeaf("str", std::string("ab\0cd", 5));
  EXPECT_EQ(readText(8), std::string("ab\0\0\0\0\0xxxxxxxxx", 16));
}

TEST_F(ValueReadTest, TextIsNotTrimmed) {
  setLeaf("str", " \ta\r\n");
  EXPECT_EQ(readText(8), std::string(" \ta\r\n\0\0xxxxxxxxx", 16));
}

TEST_F(ValueReadTest, NameAndTextMayBeLong) {
  const std::string name(5000, 'n');
  const std::string text(100000, 't');
  std::string buffer(text.size() + 2, 'x');
  cfm.leaves[name] = {"str", text, 100000};
  EXPECT_EQ(c_cfm_get_value(name.c_str(), "str", buffer.data(), static_cast<unsigned int>(buffer.size())), 0);
  EXPECT_EQ(buffer, text + '\0' + 'x');
}

TEST_F(ValueReadTest, IntegersAreDecimal) {
  EXPECT_EQ(readWord<std::int32_t>("int", "-5"), -5);
  EXPECT_EQ(readWord<std::int32_t>("int", "2147483647"), 2147483647);
  EXPECT_EQ(readWord<std::int32_t>("int", "010"), 10);
  EXPECT_EQ(readWord<std::int32_t>("int", " \t\n+12 apples"), 12);
}

TEST_F(ValueReadTest, TextWithoutDigitsIsZero) {
  EXPECT_EQ(readWord<std::int32_t>("int", "apples"), 0);
  EXPECT_EQ(readWord<std::int32_t>("uint", ""), 0);
  EXPECT_EQ(readWord<std::int32_t>("uint", "0x10"), 0);
}

TEST_F(ValueReadTest, UnsignedIntegersAreReadWithASign) {
  EXPECT_EQ(readWord<std::uint32_t>("uint", "-1"), 4294967295);
  EXPECT_EQ(readWord<std::uint32_t>("uint", "-1294967296"), 3000000000);
  EXPECT_EQ(readWord<std::uint32_t>("uint", "2147483647"), 2147483647);
}

TEST_F(ValueReadTest, FlagIsZeroForFalseAndZero) {
  EXPECT_EQ(readWord<std::int32_t>("bool", "false"), 0);
  EXPECT_EQ(readWord<std::int32_t>("bool", "0"), 0);
}

TEST_F(ValueReadTest, FlagIsOneForAnyOtherText) {
  for (const char* text :
       {"true", "1", "yes", "no", "off", "", "TRUE", "FALSE", "00", " false", "false ", "2"}) {
    EXPECT_EQ(readWord<std::int32_t>("bool", text), 1) << '"' << text << '"';
  }
}

TEST_F(ValueReadTest, FlagIsAWordWhateverTheLength) {
  for (const char* text : {"true", "false"}) {
    unsigned char bytes[5] = {0xaa, 0xaa, 0xaa, 0xaa, 0xaa};
    std::int32_t word;
    setLeaf("bool", text);
    EXPECT_EQ(read("bool", bytes, 1), 0);
    std::memcpy(&word, bytes, sizeof word);
    EXPECT_EQ(word, text == std::string("true") ? 1 : 0);
    EXPECT_EQ(bytes[4], 0xaa);
  }
}

TEST_F(ValueReadTest, UnknownTypeStoresNothing) {
  std::string buffer = "untouched";
  setLeaf("hex", "ff");
  EXPECT_EQ(read("hex", buffer.data(), 9), 0);
  EXPECT_EQ(buffer, "untouched");
  EXPECT_EQ(calls(),
            Calls({"context.getCfm()", "cfm.getNode('A.B')", "node.getType()", "cfm.releaseNode('A.B')"}));
}

class TextReadTest : public ValueReadTest, public testing::WithParamInterface<const char*> {};

TEST_P(TextReadTest, TextIsCopiedUnchanged) {
  char buffer[16] = {};
  setLeaf(GetParam(), "any text");
  EXPECT_EQ(read(GetParam(), buffer, sizeof buffer), 0);
  EXPECT_STREQ(buffer, "any text");
}

TEST_P(TextReadTest, LongTextIsTruncatedWithAWarning) {
  char buffer[4] = {};
  setLeaf(GetParam(), "any text");
  EXPECT_EQ(read(GetParam(), buffer, sizeof buffer), 0);
  EXPECT_STREQ(buffer, "any");
  ASSERT_EQ(context.diagnostics.size(), 1U);
  EXPECT_EQ(context.diagnostics[0].text, " data length of string is tool small!");
}

INSTANTIATE_TEST_SUITE_P(Types, TextReadTest,
                         testing::Values("str", "ipaddr", "macaddr", "pwd", "base64", "datetime"));

class WordReadTest : public ValueReadTest, public testing::WithParamInterface<const char*> {};

TEST_P(WordReadTest, UnalignedBufferIsFilled) {
  setLeaf(GetParam(), "1");
  for (std::size_t offset = 0; offset < 4; ++offset) {
    alignas(std::int32_t) char bytes[8];
    std::memset(bytes, 'x', sizeof bytes);
    EXPECT_EQ(read(GetParam(), bytes + offset, 4), 0);

    std::int32_t word;
    std::memcpy(&word, bytes + offset, sizeof word);
    EXPECT_EQ(word, 1);
    EXPECT_EQ(std::string(bytes, offset), std::string(offset, 'x'));
    EXPECT_EQ(std::string(bytes + offset + 4, 4 - offset), std::string(4 - offset, 'x'));
  }
}

INSTANTIATE_TEST_SUITE_P(Types, WordReadTest, testing::Values("int", "uint", "bool"));

class IntegerReadTest : public ValueReadTest, public testing::WithParamInterface<const char*> {};

TEST_P(IntegerReadTest, BufferBelowFourBytesIsRejectedAndNotWritten) {
  for (unsigned int size = 1; size < 4; ++size) {
    char bytes[4] = {'x', 'x', 'x', 'x'};
    setLeaf(GetParam(), "12");
    EXPECT_EQ(read(GetParam(), bytes, size), -1023);
    EXPECT_EQ(std::string(bytes, 4), "xxxx");
    EXPECT_EQ(calls(), Calls({"context.getCfm()", "cfm.getNode('A.B')", "node.getType()",
                              "context.debugOut('cpp2c', 'warning!, data size is too small!')",
                              "cfm.releaseNode('A.B')"}));
  }
}

TEST_P(IntegerReadTest, LargerBufferReceivesOneWord) {
  char bytes[8] = {'x', 'x', 'x', 'x', 'x', 'x', 'x', 'x'};
  setLeaf(GetParam(), "0");
  EXPECT_EQ(read(GetParam(), bytes, sizeof bytes), 0);
  EXPECT_EQ(std::string(bytes, 8), std::string("\0\0\0\0xxxx", 8));
}

TEST_P(IntegerReadTest, WrittenWordIsReadBackUnchanged) {
  const std::uint32_t written = 3000000000;
  setLeaf(GetParam(), "");
  c_cfm_set_value("A.B", 0, GetParam(), &written, sizeof written);
  ASSERT_EQ(calls().back(), "cfm.setValue('A.B', '-1294967296', 0)");
  EXPECT_EQ(readWord<std::uint32_t>(GetParam(), "-1294967296"), written);
}

INSTANTIATE_TEST_SUITE_P(Types, IntegerReadTest, testing::Values("int", "uint"));

}  // namespace
