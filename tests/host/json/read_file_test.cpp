// SPDX-License-Identifier: MIT
#include <sys/stat.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

#include "host/json/document.h"
#include "tests/host/support/child_process.h"
#include "tests/host/support/error_text.h"
#include "tests/support/temporary_folder.h"

namespace host {
namespace {

constexpr std::uintmax_t kMost = 256 << 20;

std::string refusalOf(const std::string& file) {
  return errorOf([&] { readFile(file); });
}

TEST(ReadFileLimitTest, FileIsReadWhole) {
  const TemporaryFolder folder;
  const std::string text = std::string(10000, 'x') + '\0' + "\n\xff";
  EXPECT_EQ(readFile(folder.write("file", text)), text);
  EXPECT_EQ(readFile(folder.write("file", "")), "");
}

TEST(ReadFileLimitTest, EndlessFileIsRefused) {
  EXPECT_EQ(refusalOf("/dev/zero"), "-1023 /dev/zero: larger than 256 MiB");
}

TEST(ReadFileLimitTest, EndlessPipeIsRefused) {
  const TemporaryFolder folder;
  const std::string pipe = folder.file("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const ChildProcess writer([&](int) {
    if (std::system(("exec cat /dev/zero > " + pipe).c_str()) != 0) return;
  });
  EXPECT_EQ(refusalOf(pipe), "-1023 " + pipe + ": larger than 256 MiB");
}

TEST(ReadFileLimitTest, SizeOfALargeFileIsLimited) {
  const TemporaryFolder folder;
  const std::string file = folder.write("file", "");
  std::filesystem::resize_file(file, kMost + 1);
  EXPECT_EQ(refusalOf(file), "-1023 " + file + ": larger than 256 MiB");
  std::filesystem::resize_file(file, kMost);
  EXPECT_EQ(readFile(file).size(), kMost);
}

}  // namespace

}  // namespace host
