// SPDX-License-Identifier: MIT
// Writes of leaves.
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>

#include "tests/support/recording_test.h"

namespace {

class ValueWriteTest : public RecordingTest {
 protected:
  ValueWriteTest() { setLeaf("str"); }

  void setLeaf(const std::string& type) { cfm.leaves["A.B"] = {type, "old", 3}; }

  int write(const char* type, const void* data, unsigned int data_len) {
    return c_cfm_set_value("A.B", 7, type, data, data_len);
  }

  template <typename Word>
  int writeWord(const char* type, Word word) {
    setLeaf(type);
    return write(type, &word, sizeof word);
  }

  // Returns the call of setValue() by the last write.
  std::string written() {
    const Calls all = calls();
    return all.empty() ? "" : all.back();
  }
};

TEST_F(ValueWriteTest, NodeIsReleasedBeforeTheWrite) {
  log.results["cfm.setValue"] = -33;
  EXPECT_EQ(write("str", "new", 4), -33);
  EXPECT_EQ(calls(), Calls({"context.getCfm()", "cfm.getNode('A.B')", "node.getType()",
                            "cfm.releaseNode('A.B')", "cfm.setValue('A.B', 'new', 7)"}));
}

TEST_F(ValueWriteTest, NodeOfAWordOrFlagIsReleasedBeforeTheWrite) {
  const Calls way = {"context.getCfm()", "cfm.getNode('A.B')", "node.getType()", "cfm.releaseNode('A.B')",
                     "cfm.setValue('A.B', '1', 7)"};
  writeWord("int", 1);
  EXPECT_EQ(calls(), way);
  writeWord("uint", 1);
  EXPECT_EQ(calls(), way);
  writeWord("bool", 1);
  EXPECT_EQ(calls(), Calls({way[0], way[1], way[2], way[3], "cfm.setValue('A.B', 'true', 7)"}));
}

TEST_F(ValueWriteTest, TextIsReadAfterTheNodeIsReleased) {
  char text[] = "older";
  log.on_call = [&](const std::string& call) {
    if (call == "cfm.releaseNode('A.B')") std::memcpy(text, "newer", sizeof text);
  };
  write("str", text, sizeof text);
  EXPECT_EQ(written(), "cfm.setValue('A.B', 'newer', 7)");
}

TEST_F(ValueWriteTest, FlagIsReadAfterTheNodeIsReleased) {
  setLeaf("bool");
  std::int32_t flag = 0;
  log.on_call = [&](const std::string& call) {
    if (call == "cfm.releaseNode('A.B')") flag = 1;
  };
  write("bool", &flag, sizeof flag);
  EXPECT_EQ(written(), "cfm.setValue('A.B', 'true', 7)");
}

TEST_F(ValueWriteTest, WordIsReadBeforeTheNodeIsReleased) {
  for (const char* type : {"int", "uint"}) {
    setLeaf(type);
    std::int32_t word = 1;
    log.on_call = [&](const std::string& call) {
      if (call == "cfm.releaseNode('A.B')") word = 2;
    };
    write(type, &word, sizeof word);
    EXPECT_EQ(written(), "cfm.setValue('A.B', '1', 7)");
  }
}

TEST_F(ValueWriteTest, OptionIsPassedUnchanged) {
  c_cfm_set_value("A.B", std::numeric_limits<int>::min(), "str", "new", 4);
  EXPECT_EQ(written(), "cfm.setValue('A.B', 'new', -2147483648)");
}

TEST_F(ValueWriteTest, LengthDoesNotTruncateTheText) {
  EXPECT_EQ(write("str", "a long text", 1), 0);
  EXPECT_EQ(written(), "cfm.setValue('A.B', 'a long text', 7)");
}

TEST_F(ValueWriteTest, LengthDoesNotExtendTheText) {
  write("str", "ab\0cd", 6);
  EXPECT_EQ(written(), "cfm.setValue('A.B', 'ab', 7)");
}

TEST_F(ValueWriteTest, TextMayBeEmpty) {
  write("str", "", 1);
  EXPECT_EQ(written(), "cfm.setValue('A.B', '', 7)");
}

TEST_F(ValueWriteTest, TextIsNotTrimmedOrFormatted) {
  write("str", " \t%s%n \r\n", 1);
  EXPECT_EQ(written(), "cfm.setValue('A.B', ' \t%s%n \r\n', 7)");
}

TEST_F(ValueWriteTest, NameAndTextMayBeLong) {
  const std::string name(5000, 'n');
  const std::string text(100000, 't');
  cfm.leaves[name] = {"str", "", 0};
  EXPECT_EQ(c_cfm_set_value(name.c_str(), 0, "str", text.c_str(), 1), 0);
  EXPECT_EQ(written(), "cfm.setValue('" + name + "', '" + text + "', 0)");
}

TEST_F(ValueWriteTest, LengthOfAWordIsNotChecked) {
  const std::int32_t word = -5;
  setLeaf("int");
  EXPECT_EQ(write("int", &word, 1), 0);
  EXPECT_EQ(written(), "cfm.setValue('A.B', '-5', 7)");
}

TEST_F(ValueWriteTest, IntegersAreDecimal) {
  writeWord("int", -5);
  EXPECT_EQ(written(), "cfm.setValue('A.B', '-5', 7)");
  writeWord("int", std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(written(), "cfm.setValue('A.B', '2147483647', 7)");
  writeWord("int", std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(written(), "cfm.setValue('A.B', '-2147483648', 7)");
  writeWord("int", 0);
  EXPECT_EQ(written(), "cfm.setValue('A.B', '0', 7)");
}

TEST_F(ValueWriteTest, UnsignedIntegersAreWrittenWithASign) {
  writeWord("uint", std::uint32_t{3000000000});
  EXPECT_EQ(written(), "cfm.setValue('A.B', '-1294967296', 7)");
  writeWord("uint", std::uint32_t{4294967295});
  EXPECT_EQ(written(), "cfm.setValue('A.B', '-1', 7)");
  writeWord("uint", std::uint32_t{2147483648});
  EXPECT_EQ(written(), "cfm.setValue('A.B', '-2147483648', 7)");
  writeWord("uint", std::uint32_t{2147483647});
  EXPECT_EQ(written(), "cfm.setValue('A.B', '2147483647', 7)");
}

TEST_F(ValueWriteTest, FlagIsTrueUnlessAllItsBytesAreZero) {
  writeWord("bool", 0);
  EXPECT_EQ(written(), "cfm.setValue('A.B', 'false', 7)");
  writeWord("bool", 2);
  EXPECT_EQ(written(), "cfm.setValue('A.B', 'true', 7)");
  writeWord("bool", 256);
  EXPECT_EQ(written(), "cfm.setValue('A.B', 'true', 7)");
  writeWord("bool", -1);
  EXPECT_EQ(written(), "cfm.setValue('A.B', 'true', 7)");
  writeWord("bool", std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(written(), "cfm.setValue('A.B', 'true', 7)");
}

TEST_F(ValueWriteTest, LeafOfAnUnknownTypeIsNotWritten) {
  setLeaf("hex");
  EXPECT_EQ(write("hex", "ff", 3), 0);
  EXPECT_EQ(calls(),
            Calls({"context.getCfm()", "cfm.getNode('A.B')", "node.getType()", "cfm.releaseNode('A.B')"}));
}

class TextWriteTest : public ValueWriteTest, public testing::WithParamInterface<const char*> {};

TEST_P(TextWriteTest, TextIsPassedUnchanged) {
  setLeaf(GetParam());
  log.results["cfm.setValue"] = 5;
  EXPECT_EQ(write(GetParam(), "any text at all", 1), 5);
  EXPECT_EQ(written(), "cfm.setValue('A.B', 'any text at all', 7)");
}

INSTANTIATE_TEST_SUITE_P(Types, TextWriteTest,
                         testing::Values("str", "ipaddr", "macaddr", "pwd", "base64", "datetime"));

class WordWriteTest : public ValueWriteTest, public testing::WithParamInterface<const char*> {};

TEST_P(WordWriteTest, UnalignedDataIsWritten) {
  const std::int32_t word = 1;
  const std::string expected = GetParam() == std::string("bool") ? "true" : "1";
  setLeaf(GetParam());
  for (std::size_t offset = 0; offset < 4; ++offset) {
    alignas(std::int32_t) char bytes[8] = {};
    std::memcpy(bytes + offset, &word, sizeof word);
    EXPECT_EQ(write(GetParam(), bytes + offset, 4), 0);
    EXPECT_EQ(written(), "cfm.setValue('A.B', '" + expected + "', 7)");
  }
}

INSTANTIATE_TEST_SUITE_P(Types, WordWriteTest, testing::Values("int", "uint", "bool"));

}  // namespace
