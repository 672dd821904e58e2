// SPDX-License-Identifier: MIT
// Whatever the bytes, a file is either read or refused.
#include <elf.h>
#include <stddef.h>

#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "contextctl/inspect/elf_image.h"
#include "contextctl/inspect/function_names.h"
#include "contextctl/inspect/library.h"
#include "contextctl/system/failure.h"
#include "tests/contextctl/inspect_test.h"

namespace contextctl {
namespace {

class InspectDamageTest : public testing::Test {
 protected:
  static std::string contentOf(const std::string& path) {
    std::ifstream stream(path);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  // Whether it could be read; any other end than these two fails the test.
  static bool isRead(const std::string& content) {
    try {
      const ElfImage image("damaged.so", content);
      readFunctionNames(image);
      readLibrary(image);
      return true;
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.status(), kExitNoAnswer);
      EXPECT_EQ(std::string(failure.what()).compare(0, 12, "damaged.so: "), 0) << failure.what();
      return false;
    }
  }

  const std::string whole = contentOf(inspected("sysv"));
  const std::string whole_gnu = contentOf(inspected("plain"));
};

TEST_F(InspectDamageTest, TheUndamagedFileIsRead) {
  EXPECT_TRUE(isRead(whole));
  EXPECT_TRUE(isRead(whole_gnu));
}

// What is behind the last segment, the section headers among it, the loader never misses.
TEST_F(InspectDamageTest, AFileCutAnywhereIsReadOrRefused) {
  int refused = 0;
  for (size_t size = 0; size < whole_gnu.size(); size++) refused += isRead(whole_gnu.substr(0, size)) ? 0 : 1;
  EXPECT_GT(refused, 1000);
}

TEST_F(InspectDamageTest, AFileWithAnyByteSetIsReadOrRefused) {
  for (const std::string* content : {&whole, &whole_gnu}) {
    int refused = 0;
    for (size_t i = 0; i < content->size(); i++) {
      std::string damaged = *content;
      damaged[i] = static_cast<char>(0xff);
      refused += isRead(damaged) ? 0 : 1;
    }
    EXPECT_GT(refused, 10);
  }
}

TEST_F(InspectDamageTest, AFileWithAnyByteClearedIsReadOrRefused) {
  for (size_t i = 0; i < whole_gnu.size(); i++) {
    std::string damaged = whole_gnu;
    damaged[i] = 0;
    isRead(damaged);
  }
}

TEST_F(InspectDamageTest, AHugeCountOfProgramHeadersIsRefused) {
  std::string damaged = whole_gnu;
  damaged[offsetof(Elf64_Ehdr, e_phnum)] = '\xfe';
  damaged[offsetof(Elf64_Ehdr, e_phnum) + 1] = '\xff';
  EXPECT_FALSE(isRead(damaged));
}

TEST_F(InspectDamageTest, AnotherByteOrderOfTheSameBytesIsRefused) {
  std::string damaged = whole_gnu;
  damaged[EI_DATA] = damaged[EI_DATA] == ELFDATA2LSB ? ELFDATA2MSB : ELFDATA2LSB;
  EXPECT_FALSE(isRead(damaged));
}

}  // namespace
}  // namespace contextctl
