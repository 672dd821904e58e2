// SPDX-License-Identifier: MIT
// Which users can read an existing state file.
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "include_c"
#include "tests/host/state/stateful_config.h"
#include "tests/host/support/child_process.h"
#include "tests/host/support/error_text.h"
#include "tests/host/support/memory_log.h"
#include "tests/support/temporary_folder.h"

namespace host {
namespace {

const char kConfig[] = R"({"objects": [{"number": 1, "name": "A.", "leaves": {"X": {"type": "str"}}}]})";

unsigned modeOf(const std::string& file) {
  struct stat status {};
  EXPECT_EQ(stat(file.c_str(), &status), 0) << file;
  return status.st_mode & 07777U;
}

class FileAccessTest : public testing::Test {
 protected:
  FileAccessTest() { save(); }

  void save() {
    StatefulConfig config(file_, kConfig, log_);
    config.set("A.X", "secret");
    EXPECT_EQ(config.save(), C_RESULT_OK);
  }

  std::string restored() { return StatefulConfig(file_, kConfig, log_).valueOf("A.X"); }

  static std::string narrowed(const std::string& file, const std::string& mode) {
    return "4 state: " + file + ": other users had access; changed its mode from " + mode + " to 0600";
  }

  TemporaryFolder folder_;
  const std::string file_ = folder_.file("state.db");
  MemoryLog log_;
};

TEST_F(FileAccessTest, FileOfItsOwnerAloneIsNotMentioned) {
  chmod(file_.c_str(), 0400 | 0200);
  EXPECT_EQ(restored(), "secret");
  EXPECT_TRUE(log_.records.empty());
}

TEST_F(FileAccessTest, AccessOfGroupOrOthersIsTakenAway) {
  std::vector<std::string> expected;
  for (const auto& [mode, text] : {std::pair(0640U, "0640"), std::pair(0604U, "0604"),
                                   std::pair(0777U, "0777"), std::pair(0601U, "0601")}) {
    chmod(file_.c_str(), mode);
    EXPECT_EQ(restored(), "secret");
    EXPECT_EQ(modeOf(file_), 0600U) << text;
    expected.push_back(narrowed(file_, text));
  }
  EXPECT_EQ(log_.records, expected);
}

TEST_F(FileAccessTest, AccessToTheLogIsTakenAwayToo) {
  chmod(file_.c_str(), 0644);
  // Killed, it leaves the write-ahead log behind.
  EXPECT_EQ(inChild([&] {
              static const auto* config = new StatefulConfig(file_, kConfig, log_);
              chmod(file_.c_str(), 0644);
              chmod((file_ + "-wal").c_str(), 0644);
              return std::string(config == nullptr ? "no" : "yes");
            }),
            "yes");
  const StatefulConfig config(file_, kConfig, log_);
  EXPECT_EQ(modeOf(file_), 0600U);
  EXPECT_EQ(modeOf(file_ + "-wal"), 0600U);
  EXPECT_EQ(log_.records, std::vector<std::string>{narrowed(file_, "0644")});
}

TEST_F(FileAccessTest, OpenFileOfAnotherUserIsRefused) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can change the owner of a file";
  ASSERT_EQ(chown(file_.c_str(), 65534, 65534), 0);
  chmod(file_.c_str(), 0640);
  EXPECT_EQ(errorOf([&] { restored(); }), "-1021 " + file_ +
                                              ": other users have access, and it belongs to user 65534, who "
                                              "must change its mode from 0640 to 0600");
  EXPECT_EQ(modeOf(file_), 0640U);
}

TEST_F(FileAccessTest, LinkIsFollowed) {
  const std::string target = folder_.file("target");
  std::filesystem::rename(file_, target);
  std::filesystem::create_symlink(target, file_);
  chmod(target.c_str(), 0644);
  EXPECT_EQ(restored(), "secret");
  EXPECT_EQ(modeOf(target), 0600U);
  EXPECT_TRUE(std::filesystem::is_symlink(file_));
}

TEST_F(FileAccessTest, FileThatIsNoStateFileKeepsItsMode) {
  const std::string target = folder_.write("target", "something else");
  std::filesystem::remove(file_);
  std::filesystem::create_symlink(target, file_);
  chmod(target.c_str(), 0644);
  EXPECT_EQ(errorOf([&] { restored(); }), "-1023 " + file_ + ": is not a database");
  EXPECT_EQ(modeOf(target), 0644U);
}

TEST_F(FileAccessTest, LinkToNothingIsRefused) {
  std::filesystem::remove(file_);
  std::filesystem::create_symlink(folder_.file("nothing"), file_);
  EXPECT_EQ(errorOf([&] { restored(); }),
            "-1021 " + file_ + ": cannot open the file or its journal: No such file or directory");
}

}  // namespace

}  // namespace host
