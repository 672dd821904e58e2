// SPDX-License-Identifier: MIT
// A state file that is removed or replaced while the program uses it.
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/include/cpp2c_host.h"
#include "include_c"
#include "tests/host/state/stateful_config.h"
#include "tests/host/support/child_process.h"
#include "tests/host/support/memory_log.h"
#include "tests/support/temporary_folder.h"

namespace host {
namespace {

constexpr int kLink = 2;

const char kConfig[] = R"({"objects": [
  {"number": 1, "name": "A.", "leaves": {"X": {"type": "str"}, "Y": {"type": "str"}}},
  {"number": 2, "name": "Link.", "dynamic": true, "leaves": {"Mtu": {"type": "uint"}},
   "instances": {"Link.lo.": {}}}]})";

using Records = std::vector<std::string>;

class MovedFileTest : public testing::Test {
 protected:
  MovedFileTest() {
    std::filesystem::create_directory(folder_.file("state"));
    start();
    config_->set("A.X", "saved before");
    (*config_)->setAttr(1, 5);
    (*config_)->setValue("Link.eth0.Mtu", "9000", C_CFM_CREATE);
    (*config_)->deleteInstance("Link.lo.");
    EXPECT_EQ(config_->save(), C_RESULT_OK);
  }

  void start() {
    config_.reset();
    config_ = std::make_unique<StatefulConfig>(file_, kConfig, log_);
  }

  int change(const std::string& value) {
    config_->set("A.Y", value);
    return config_->save();
  }

  // What a process finds that is started after this one was killed.
  std::string killedAndRestarted() {
    for (const char* name : {"", "-wal"}) {
      if (std::filesystem::exists(file_ + name)) std::filesystem::copy_file(file_ + name, copy_ + name);
    }
    StatefulConfig restarted(copy_, kConfig, log_);
    return restarted.valueOf("A.X") + ", " + restarted.valueOf("A.Y") + ", " +
           std::to_string(restarted.attributeOf(1)) + ", " + restarted.instancesOf(kLink) +
           restarted.valueOf("Link.eth0.Mtu");
  }

  Records writtenAgain() const {
    return {"4 state: " + file_ + ": was removed or replaced; the whole saved state was written again"};
  }
  Records refused(const std::string& reason) const { return {"3 state: " + file_ + ": " + reason}; }

  void removeAll() {
    for (const char* name : {"", "-wal"}) std::filesystem::remove(file_ + name);
  }

  TemporaryFolder folder_;
  const std::string file_ = folder_.file("state/state.db");
  const std::string copy_ = folder_.file("copy.db");
  MemoryLog log_;
  std::unique_ptr<StatefulConfig> config_;
};

constexpr char kWhole[] = "saved before, changed, 5, Link.eth0. 9000";

TEST_F(MovedFileTest, RemovedFileIsWrittenAgainAsAWhole) {
  std::filesystem::remove(file_);
  EXPECT_EQ(change("changed"), C_RESULT_OK);
  EXPECT_EQ(log_.records, writtenAgain());
  EXPECT_EQ(killedAndRestarted(), kWhole);
}

TEST_F(MovedFileTest, FileRemovedWithItsLogIsWrittenAgainAsAWhole) {
  removeAll();
  EXPECT_EQ(change("changed"), C_RESULT_OK);
  EXPECT_EQ(log_.records, writtenAgain());
  EXPECT_EQ(killedAndRestarted(), kWhole);
}

TEST_F(MovedFileTest, RemovedFileIsWrittenAgainThoughNothingHasChanged) {
  EXPECT_EQ(change("changed"), C_RESULT_OK);
  removeAll();
  EXPECT_EQ(config_->save(), C_RESULT_OK);
  EXPECT_EQ(log_.records, writtenAgain());
  EXPECT_EQ(killedAndRestarted(), kWhole);
}

TEST_F(MovedFileTest, FileWrittenAgainIsSavedToFromThenOn) {
  removeAll();
  change("once");
  for (int i = 0; i < 40; i++) EXPECT_EQ(change(std::to_string(i)), C_RESULT_OK);
  EXPECT_EQ(change("changed"), C_RESULT_OK);
  EXPECT_EQ(log_.records, writtenAgain());
  EXPECT_EQ(killedAndRestarted(), kWhole);
  start();
  EXPECT_EQ(config_->valueOf("A.Y"), "changed");
}

TEST_F(MovedFileTest, AnotherStateFileInItsPlaceGetsTheWholeState) {
  {
    StatefulConfig other(folder_.file("other"), kConfig, log_);
    other.set("A.X", "other");
    other->setValue("Link.eth7.Mtu", "1", C_CFM_CREATE);
    other.save();
  }
  std::filesystem::rename(folder_.file("other"), file_);
  EXPECT_EQ(change("changed"), C_RESULT_OK);
  EXPECT_EQ(log_.records, writtenAgain());
  EXPECT_EQ(killedAndRestarted(), kWhole);
}

TEST_F(MovedFileTest, AnotherFileInItsPlaceIsLeftAlone) {
  std::filesystem::remove(file_);
  folder_.write("state/state.db", "a letter");
  EXPECT_EQ(change("changed"), C_RESULT_SYSTEM_CALL);
  EXPECT_EQ(log_.records, refused("is not a database"));
  EXPECT_EQ(folder_.read("state/state.db"), "a letter");

  std::filesystem::remove(file_);
  EXPECT_EQ(config_->save(), C_RESULT_OK);
  EXPECT_EQ(killedAndRestarted(), kWhole);
}

TEST_F(MovedFileTest, RemovedFolderIsToldAndItsReturnSaves) {
  std::filesystem::remove_all(folder_.file("state"));
  EXPECT_EQ(change("changed"), C_RESULT_SYSTEM_CALL);
  EXPECT_EQ(log_.records, refused("cannot be created: No such file or directory"));
  EXPECT_EQ(config_->save(), C_RESULT_SYSTEM_CALL);

  std::filesystem::create_directory(folder_.file("state"));
  EXPECT_EQ(config_->save(), C_RESULT_OK);
  EXPECT_EQ(killedAndRestarted(), kWhole);
}

TEST_F(MovedFileTest, RenamedFolderIsNotFollowed) {
  std::filesystem::rename(folder_.file("state"), folder_.file("renamed"));
  EXPECT_EQ(change("changed"), C_RESULT_SYSTEM_CALL);
  std::filesystem::rename(folder_.file("renamed"), folder_.file("state"));
  EXPECT_EQ(config_->save(), C_RESULT_OK);
  EXPECT_EQ(killedAndRestarted(), kWhole);
}

// Another program's saves must not be lost with the log that it writes at the same name.
TEST_F(MovedFileTest, FileThatAnotherProcessUsesMeanwhileIsLeftToIt) {
  removeAll();
  ChildProcess other([&](int output) {
    StatefulConfig config(file_, kConfig, log_);
    config.set("A.X", "other");
    const std::string line = std::to_string(config.save()) + '\n';
    if (write(output, line.data(), line.size()) > 0) pause();
  });
  EXPECT_EQ(other.line(), "0");
  EXPECT_EQ(change("changed"), C_RESULT_SYSTEM_CALL);
  EXPECT_EQ(log_.records, refused("is in use by another process"));
  config_.reset();
  other.kill();
  start();
  EXPECT_EQ(config_->valueOf("A.X"), "other");
}

TEST_F(MovedFileTest, ReplacementIsLeftAloneAtTheEnd) {
  { StatefulConfig(folder_.file("other"), kConfig, log_).save(); }
  std::filesystem::rename(folder_.file("other"), file_);
  const std::string replacement = folder_.read("state/state.db");
  config_.reset();
  EXPECT_EQ(folder_.read("state/state.db"), replacement);
  EXPECT_FALSE(std::filesystem::exists(file_ + "-wal"));
}

TEST_F(MovedFileTest, RemovedLogIsReplaced) {
  std::filesystem::remove(file_ + "-wal");
  EXPECT_EQ(change("changed"), C_RESULT_OK);
  EXPECT_EQ(killedAndRestarted(), kWhole);
  EXPECT_EQ(log_.records, Records{"4 state: " + file_ +
                                  "-wal: was removed or replaced; the whole saved state is in " + file_});
}

TEST_F(MovedFileTest, RelativeNameMeansTheFolderOfTheStart) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder_.file("state"));
  config_.reset();
  config_ = std::make_unique<StatefulConfig>("state.db", kConfig, log_);
  std::filesystem::current_path(before);
  EXPECT_EQ(change("unseen"), C_RESULT_OK);
  EXPECT_TRUE(log_.records.empty());
  removeAll();
  EXPECT_EQ(change("changed"), C_RESULT_OK);
  EXPECT_EQ(killedAndRestarted(), kWhole);
}

}  // namespace

}  // namespace host
