// SPDX-License-Identifier: MIT
#include "contextctl/inspect/string_abi.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "contextctl/inspect/library.h"

namespace contextctl {
namespace {

StringAbi abiOf(const std::vector<std::string>& names) {
  std::vector<DynamicSymbol> symbols;
  for (const std::string& name : names) symbols.push_back({name, false, false, false});
  return stringAbiOf(symbols);
}

TEST(StringAbiTest, NewStringsAreRecognisedByTheirNamespace) {
  EXPECT_EQ(abiOf({"_Z1fNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE"}), StringAbi::kNew);
}

TEST(StringAbiTest, NewStringsAreRecognisedByTheirTag) {
  EXPECT_EQ(abiOf({"_Z4nameB5cxx11v"}), StringAbi::kNew);
}

TEST(StringAbiTest, OldStringsAreRecognisedInArguments) {
  EXPECT_EQ(abiOf({"_Z1fSs"}), StringAbi::kOld);
  EXPECT_EQ(abiOf({"_ZN1A4initESsi"}), StringAbi::kOld);
}

TEST(StringAbiTest, OldStringsAreRecognisedByTheirMembers) {
  EXPECT_EQ(abiOf({"_ZNSsC1ERKSs"}), StringAbi::kOld);
}

TEST(StringAbiTest, SimilarNamesAreNotStrings) {
  for (const char* name : {"getSsid", "_ZN6LinkSs4openEv", "_ZN2my3std6stringC1Ev",
                           "_Z1fSt17basic_string_viewIcSt11char_traitsIcEE"})
    EXPECT_EQ(abiOf({name}), StringAbi::kNone) << name;
}

TEST(StringAbiTest, BothTogetherAreMixed) {
  EXPECT_EQ(abiOf({"_Z1fSs", "_Z4nameB5cxx11v"}), StringAbi::kMixed);
}

}  // namespace
}  // namespace contextctl
