// SPDX-License-Identifier: MIT
#include "contextctl/inspect/gnu_attributes.h"

#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "contextctl/inspect/elf_image.h"
#include "contextctl/system/failure.h"
#include "tests/contextctl/inspect/elf_file.h"

namespace contextctl {
namespace {

// A block: its size, including these four bytes, and its content.
std::string block(const std::string& content) {
  return std::string{'\0', '\0', '\0', static_cast<char>(content.size() + 4)} + content;
}

// A list of attributes of a scope.
std::string list(char scope, const std::string& attributes) {
  return scope + std::string{'\0', '\0', '\0', static_cast<char>(attributes.size() + 5)} + attributes;
}

std::string vendor(const std::string& name, const std::string& lists) {
  return block(name + '\0' + lists);
}

std::optional<std::uint64_t> attribute(const std::string& section, std::uint64_t tag = 4) {
  ElfFile file;
  file.is64 = false;
  file.big_endian = true;
  file.sections = {{SHT_PROGBITS, "A"}, {SHT_GNU_ATTRIBUTES, section}};
  return gnuAttribute(ElfImage("x.so", file.content()), tag);
}

TEST(GnuAttributesTest, AnAttributeIsFound) {
  EXPECT_EQ(attribute("A" + vendor("gnu", list(1, "\4\3"))), 3u);
}

TEST(GnuAttributesTest, OtherTagsAreSkipped) {
  EXPECT_EQ(attribute("A" + vendor("gnu", list(1, std::string("\5text\0\6\7\4\3", 10)))), 3u);
  EXPECT_EQ(attribute("A" + vendor("gnu", list(1, "\6\4"))), std::nullopt);
}

TEST(GnuAttributesTest, NumbersMayHaveSeveralBytes) {
  EXPECT_EQ(attribute("A" + vendor("gnu", list(1, "\x84\1\x85\2")), 132), 261u);
}

TEST(GnuAttributesTest, OtherVendorsAndScopesAreSkipped) {
  const std::string other = vendor("other", list(1, "\4\1"));
  EXPECT_EQ(attribute("A" + other + vendor("gnu", list(2, "\4\2") + list(1, "\4\3"))), 3u);
  EXPECT_EQ(attribute("A" + other), std::nullopt);
  EXPECT_EQ(attribute("A" + vendor("gnu", list(2, "\4\2"))), std::nullopt);
}

TEST(GnuAttributesTest, AnotherVersionIsSkipped) {
  EXPECT_EQ(attribute("B" + vendor("gnu", list(1, "\4\3"))), std::nullopt);
  EXPECT_EQ(attribute(""), std::nullopt);
}

TEST(GnuAttributesTest, AListEndsAtItsLength) {
  EXPECT_EQ(attribute("A" + vendor("gnu", list(1, "") + "\4\3")), std::nullopt);
}

TEST(GnuAttributesTest, ALengthThatDoesNotIncludeItselfIsDamage) {
  EXPECT_THROW(attribute(std::string("A\0\0\0\3gnu\0", 9)), Failure);
  EXPECT_THROW(attribute("A" + vendor("gnu", std::string("\1\0\0\0\4", 5))), Failure);
}

TEST(GnuAttributesTest, ANumberThatDoesNotEndIsDamage) {
  EXPECT_THROW(attribute("A" + vendor("gnu", list(1, "\4" + std::string(11, '\xff')))), Failure);
}

}  // namespace
}  // namespace contextctl
