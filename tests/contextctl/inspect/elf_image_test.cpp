// SPDX-License-Identifier: MIT
#include "contextctl/inspect/elf_image.h"

#include <gtest/gtest.h>

#include "contextctl/system/failure.h"
#include "tests/contextctl/inspect/elf_file.h"

namespace contextctl {
namespace {

class ElfImageTest : public testing::Test {
 protected:
  static std::string contentOf(ElfFile file) {
    file.segments.push_back({PT_NOTE, std::string("\1\2\3\4end", 8)});
    return file.content();
  }

  const std::string content = contentOf(ElfFile());
  const std::uint64_t size = content.size();
  const ElfImage image{"x.so", content};
};

TEST_F(ElfImageTest, TheLastBytesCanBeRead) {
  EXPECT_EQ(image.bytes(size - 8, 8), content.substr(size - 8));
  EXPECT_EQ(image.word(size - 8), 0x04030201u);
  EXPECT_EQ(image.text(size - 4), "end");
  EXPECT_EQ(image.text(size - 1), "");
  EXPECT_EQ(image.bytes(size, 0), "");
}

TEST_F(ElfImageTest, BytesBeyondTheFileCannotBeRead) {
  EXPECT_THROW(image.bytes(size - 8, 9), Failure);
  EXPECT_THROW(image.bytes(size + 1, 0), Failure);
  EXPECT_THROW(image.bytes(~std::uint64_t{0}, 2), Failure);
  EXPECT_THROW(image.bytes(2, ~std::uint64_t{0}), Failure);
  EXPECT_THROW(image.word(size - 3), Failure);
  EXPECT_THROW(image.text(size), Failure);
}

TEST_F(ElfImageTest, ATextMustEnd) {
  const ElfImage unterminated("x.so", content + 'x');
  EXPECT_THROW(unterminated.text(size), Failure);
}

TEST_F(ElfImageTest, RecordsMustBeInside) {
  EXPECT_NE(image.records(size - 24, 1, ELF_T_SYM), nullptr);
  EXPECT_THROW(image.records(size - 23, 1, ELF_T_SYM), Failure);
  EXPECT_THROW(image.records(0, 0xaaaaaaaaaaaaaab, ELF_T_SYM), Failure);
}

TEST_F(ElfImageTest, AnAddressIsFoundInItsSegment) {
  EXPECT_EQ(image.offsetOf(0), 0u);
  EXPECT_EQ(image.offsetOf(size - 1), size - 1);
  EXPECT_THROW(image.offsetOf(size), Failure);
}

TEST_F(ElfImageTest, WordsHaveTheByteOrderOfTheFile) {
  ElfFile file;
  file.big_endian = true;
  const ElfImage big("x.so", contentOf(file));
  EXPECT_EQ(big.word(size - 8), 0x01020304u);
}

TEST_F(ElfImageTest, ASegmentIsFoundByItsType) {
  EXPECT_EQ(image.findSegment(PT_NOTE)->p_filesz, 8u);
  EXPECT_EQ(image.findSegment(PT_INTERP), nullptr);
}

}  // namespace
}  // namespace contextctl
