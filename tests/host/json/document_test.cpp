// SPDX-License-Identifier: MIT
#include "host/json/document.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/host/support/error_text.h"
#include "tests/host/support/open_descriptors.h"
#include "tests/support/temporary_folder.h"

namespace host {
namespace {

class ReadFileTest : public testing::Test {
 protected:
  TemporaryFolder folder_;
};

TEST_F(ReadFileTest, WholeFileIsRead) {
  const std::string text = "first line\n" + std::string(10000, 'x');
  EXPECT_EQ(readFile(folder_.write("file", text)), text);
}

TEST_F(ReadFileTest, FileIsClosed) {
  const std::string file = folder_.write("file", "text");
  const std::size_t before = openDescriptors();
  readFile(file);
  EXPECT_EQ(openDescriptors(), before);
}

TEST_F(ReadFileTest, FileThatCannotBeReadIsClosed) {
  const std::size_t before = openDescriptors();
  EXPECT_EQ(errorOf([this] { readFile(folder_.path()); }),
            "-1021 " + folder_.path() + ": cannot be read: Is a directory");
  EXPECT_EQ(openDescriptors(), before);
}

}  // namespace

}  // namespace host
