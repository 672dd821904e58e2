// SPDX-License-Identifier: MIT
// Every damaged file is either read or rejected.
#include <elf.h>
#include <stddef.h>

#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "contextctl/inspect/elf_image.h"
#include "contextctl/inspect/library.h"
#include "contextctl/inspect/symbol_names.h"
#include "contextctl/system/failure.h"
#include "tests/contextctl/inspect/inspect_test.h"

namespace contextctl {
namespace {

class InspectDamageTest : public testing::Test {
 protected:
  static std::string contentOf(const std::string& path) {
    std::ifstream stream(path);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  // Returns whether the file can be read. Anything else than success or Failure fails the test.
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

// The loader does not need the section headers and the other bytes after the last segment.
TEST_F(InspectDamageTest, ATruncatedFileIsReadOrRejected) {
  int rejected = 0;
  for (size_t size = 0; size < whole_gnu.size(); size++)
    rejected += isRead(whole_gnu.substr(0, size)) ? 0 : 1;
  EXPECT_GT(rejected, 1000);
}

TEST_F(InspectDamageTest, AFileWithAnyByteSetIsReadOrRejected) {
  for (const std::string* content : {&whole, &whole_gnu}) {
    int rejected = 0;
    for (size_t i = 0; i < content->size(); i++) {
      std::string damaged = *content;
      damaged[i] = static_cast<char>(0xff);
      rejected += isRead(damaged) ? 0 : 1;
    }
    EXPECT_GT(rejected, 10);
  }
}

TEST_F(InspectDamageTest, AFileWithAnyByteClearedIsReadOrRejected) {
  for (size_t i = 0; i < whole_gnu.size(); i++) {
    std::string damaged = whole_gnu;
    damaged[i] = 0;
    isRead(damaged);
  }
}

TEST_F(InspectDamageTest, AHugeCountOfProgramHeadersIsRejected) {
  std::string damaged = whole_gnu;
  damaged[offsetof(Elf64_Ehdr, e_phnum)] = '\xfe';
  damaged[offsetof(Elf64_Ehdr, e_phnum) + 1] = '\xff';
  EXPECT_FALSE(isRead(damaged));
}

TEST_F(InspectDamageTest, AWrongByteOrderIsRejected) {
  std::string damaged = whole_gnu;
  damaged[EI_DATA] = damaged[EI_DATA] == ELFDATA2LSB ? ELFDATA2MSB : ELFDATA2LSB;
  EXPECT_FALSE(isRead(damaged));
}

}  // namespace
}  // namespace contextctl
