// SPDX-License-Identifier: MIT
// Small helpers of the inside.
#include <elf.h>

#include <sstream>
#include <vector>

#include <gtest/gtest.h>

#include "contextctl/connection/event_stream.h"
#include "contextctl/inspect/library.h"
#include "contextctl/inspect/platform.h"
#include "contextctl/inspect/string_abi.h"
#include "contextctl/output/durations.h"
#include "contextctl/output/table.h"

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

TEST(TableTest, LinesHaveNoBlanksAtTheirEnds) {
  std::ostringstream out;
  Table table({"A", "B"});
  table.add({"a", ""});
  table.print(out);
  EXPECT_EQ(out.str(), "A  B\na\n");
}

std::vector<std::string> itemsOf(const std::vector<std::string>& pieces) {
  std::vector<std::string> items;
  EventStream stream([&](const std::string& item) { items.push_back(item); });
  for (const std::string& piece : pieces) stream.feed(piece);
  return items;
}

TEST(EventStreamTest, AnItemEndsWithAnEmptyLine) {
  EXPECT_EQ(itemsOf({"data: a\n\ndata: b\n"}), std::vector<std::string>{"a"});
}

TEST(EventStreamTest, LinesOfAnItemAreJoined) {
  EXPECT_EQ(itemsOf({"data: a\ndata:b\n\n"}), std::vector<std::string>{"a\nb"});
}

TEST(EventStreamTest, PiecesMayEndAnywhere) {
  EXPECT_EQ(itemsOf({"da", "ta: a\r", "\n\r\n"}), std::vector<std::string>{"a"});
}

TEST(EventStreamTest, OtherLinesAreSkipped) {
  EXPECT_EQ(itemsOf({": ping\n\nid: 1\ndata: a\n\n\n"}), std::vector<std::string>{"a"});
}

TEST(MillisecondsTest, AreGivenToTheMicrosecond) {
  EXPECT_EQ(milliseconds(0.30000000000000004), "0.300");
}

TEST(UptimeTest, IsAClockWithDaysBeforeIt) {
  EXPECT_EQ(uptime(0), "00:00:00");
  EXPECT_EQ(uptime(86399999), "23:59:59");
  EXPECT_EQ(uptime(86400000), "1 day 00:00:00");
  EXPECT_EQ(uptime(2.0 * 86400000 + 61000), "2 days 00:01:01");
}

TEST(SecondsTest, AreGivenAsTheyWereWritten) {
  EXPECT_EQ(secondsText(10), "10 s");
  EXPECT_EQ(secondsText(0.5), "0.5 s");
}

std::vector<std::string> floatDifferences(int machine, std::uint32_t theirs, std::uint32_t ours) {
  Platform one, other;
  one.word_size = other.word_size = 32;
  one.machine = other.machine = machine;
  one.flags = theirs;
  other.flags = ours;
  return differences(one, other);
}

TEST(PlatformTest, ArmFloatingPointIsCompared) {
  EXPECT_EQ(floatDifferences(EM_ARM, EF_ARM_ABI_FLOAT_SOFT, EF_ARM_ABI_FLOAT_HARD),
            std::vector<std::string>{"software floating point, not hardware floating point"});
  EXPECT_EQ(floatDifferences(EM_ARM, 0, EF_ARM_ABI_FLOAT_HARD), std::vector<std::string>{});
}

TEST(PlatformTest, RiscvFloatingPointIsCompared) {
  EXPECT_EQ(
      floatDifferences(EM_RISCV, EF_RISCV_FLOAT_ABI_SOFT, EF_RISCV_FLOAT_ABI_DOUBLE),
      std::vector<std::string>{"software floating point, not double-precision hardware floating point"});
  EXPECT_EQ(floatDifferences(EM_RISCV, EF_RISCV_RVC, 0), std::vector<std::string>{});
}

StringAbi abiOf(const std::vector<std::string>& names) {
  std::vector<DynamicSymbol> symbols;
  for (const std::string& name : names) symbols.push_back({name, false, false, false});
  return stringAbiOf(symbols);
}

TEST(StringAbiTest, NewStringsAreKnownByTheirNamespace) {
  EXPECT_EQ(abiOf({"_Z1fNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE"}), StringAbi::kNew);
}

TEST(StringAbiTest, NewStringsAreKnownByTheirTag) {
  EXPECT_EQ(abiOf({"_Z4nameB5cxx11v"}), StringAbi::kNew);
}

TEST(StringAbiTest, OldStringsAreKnownByTheirShortForm) {
  EXPECT_EQ(abiOf({"_Z1fSs"}), StringAbi::kOld);
  EXPECT_EQ(abiOf({"_ZNSsC1ERKSs"}), StringAbi::kOld);
  EXPECT_EQ(abiOf({"_ZN1A4initESsi"}), StringAbi::kOld);
}

TEST(StringAbiTest, NamesThatLookLikeStringsAreNone) {
  EXPECT_EQ(abiOf({"getSsid", "_ZN6LinkSs4openEv", "_ZN2my3std6stringC1Ev",
                   "_Z1fSt17basic_string_viewIcSt11char_traitsIcEE"}),
            StringAbi::kNone);
}

TEST(StringAbiTest, BothTogetherAreMixed) {
  EXPECT_EQ(abiOf({"_Z1fSs", "_Z4nameB5cxx11v"}), StringAbi::kMixed);
}

}  // namespace
}  // namespace contextctl
