// SPDX-License-Identifier: MIT
// Saved state on a file system that is hardly larger than the state.
#include <fcntl.h>
#include <sys/mount.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "include_c"
#include "tests/host/state/stateful_config.h"
#include "tests/host/support/memory_log.h"
#include "tests/host/support/objects.h"
#include "tests/support/temporary_folder.h"

namespace host {
namespace {

constexpr int kLeaves = 400;
constexpr std::size_t kBytesPerLeaf = 64;

std::vector<Object> objects() {
  return objectsOf(objectOf(1, "A.", numberedLeaves(kLeaves, "str", ""), {"A."}));
}

std::string valueOfSize(std::size_t size, int number) {
  std::string value = std::to_string(number);
  value.resize(std::max(size, value.size()), '.');
  return value;
}

class SmallVolumeTest : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    const std::string size = std::string("size=") + GetParam();
    mounted_ = mount("tmpfs", folder_.path().c_str(), "tmpfs", 0, size.c_str()) == 0;
    if (!mounted_) GTEST_SKIP() << "cannot mount a tmpfs: " << std::strerror(errno);
    restart();
  }
  ~SmallVolumeTest() override {
    config_.reset();
    if (mounted_) umount(folder_.path().c_str());
  }

  void restart() {
    config_.reset();
    config_ = std::make_unique<StatefulConfig>(folder_.file("state.db"), objects(), log_);
  }

  void set(int leaf, const std::string& value) {
    EXPECT_EQ(config_->set("A.Leaf" + std::to_string(leaf), value), C_RESULT_OK);
  }
  std::string valueOf(int leaf) { return config_->valueOf("A.Leaf" + std::to_string(leaf)); }

  int saveAll(std::size_t bytes_per_leaf = kBytesPerLeaf) {
    for (int i = 0; i < kLeaves; i++) set(i, valueOfSize(bytes_per_leaf, i));
    return config_->save();
  }

  // Each changes some leaves, which lie in different pages of the file.
  void expectSaves(int count) {
    for (int i = 0; i < count; i++) {
      for (int leaf = i % 7; leaf < kLeaves; leaf += 97) set(leaf, valueOfSize(kBytesPerLeaf, ++changes_));
      ASSERT_EQ(config_->save(), C_RESULT_OK) << "save " << i;
    }
  }

  // Another file that takes all the room there is.
  void fillVolume() {
    const int file = open(folder_.file("other").c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
    const std::string page(4096, 'x');
    while (::write(file, page.data(), page.size()) > 0) continue;
    EXPECT_EQ(errno, ENOSPC);
    close(file);
  }
  void emptyVolume() { std::filesystem::remove(folder_.file("other")); }

  std::size_t freePages() {
    struct statvfs volume {};
    EXPECT_EQ(statvfs(folder_.path().c_str(), &volume), 0);
    return volume.f_bfree;
  }

  std::vector<std::string> diskFull() {
    return {"3 state: " + folder_.file("state.db") + ": the disk is full"};
  }

  TemporaryFolder folder_;
  MemoryLog log_;
  std::unique_ptr<StatefulConfig> config_;

 private:
  bool mounted_ = false;
  int changes_ = 0;
};

TEST_P(SmallVolumeTest, ChangingLeavesAreSavedForEver) {
  ASSERT_EQ(saveAll(), C_RESULT_OK);
  expectSaves(1200);
  const std::string last = valueOf(0);
  restart();
  EXPECT_EQ(valueOf(0), last);
  expectSaves(20);
  EXPECT_TRUE(log_.records.empty());
}

TEST_P(SmallVolumeTest, FullVolumeIsToldAndIsNoMatterOnceThereIsRoom) {
  ASSERT_EQ(saveAll(), C_RESULT_OK);
  expectSaves(100);
  fillVolume();
  EXPECT_EQ(saveAll(3 * kBytesPerLeaf), C_RESULT_SYSTEM_CALL);
  EXPECT_EQ(log_.records, diskFull());
  emptyVolume();
  EXPECT_EQ(config_->save(), C_RESULT_OK);
  EXPECT_EQ(saveAll(), C_RESULT_OK);
  expectSaves(300);
}

TEST_P(SmallVolumeTest, StartsOnAFullVolumeAndSavesOnceThereIsRoom) {
  ASSERT_EQ(saveAll(), C_RESULT_OK);
  expectSaves(100);
  const std::string saved = valueOf(0);
  fillVolume();
  EXPECT_EQ(saveAll(3 * kBytesPerLeaf), C_RESULT_SYSTEM_CALL);
  restart();
  EXPECT_EQ(valueOf(0), saved);
  EXPECT_EQ(saveAll(3 * kBytesPerLeaf), C_RESULT_SYSTEM_CALL);
  emptyVolume();
  EXPECT_EQ(config_->save(), C_RESULT_OK);
  expectSaves(300);
}

TEST_P(SmallVolumeTest, RefusedSaveGivesBackItsRoom) {
  ASSERT_EQ(saveAll(), C_RESULT_OK);
  expectSaves(3);
  const std::size_t before = freePages();
  for (const std::size_t bytes : {before * 4096, before * 3000, 4UL << 20U}) {
    set(0, std::string(bytes, 'x'));
    EXPECT_EQ(config_->save(), C_RESULT_SYSTEM_CALL) << bytes;
    EXPECT_GE(freePages(), before) << bytes;
  }
  EXPECT_EQ(log_.records.front(), diskFull().front());
  EXPECT_EQ(log_.records.size(), 3U);
  set(0, "short");
  expectSaves(300);
}

TEST_P(SmallVolumeTest, GrowsUntilTheVolumeIsFullAndGoesOnWithThat) {
  int saves = 0;
  for (; saves < kLeaves; saves++) {
    set(saves, valueOfSize(16384, saves));
    if (config_->save() != C_RESULT_OK) break;
  }
  EXPECT_GE(saves, 2);
  EXPECT_EQ(log_.records, diskFull());
  set(saves, "");
  EXPECT_EQ(config_->save(), C_RESULT_OK);
  for (int i = 0; i < 300; i++) {
    set(i % saves, valueOfSize(100, i));
    ASSERT_EQ(config_->save(), C_RESULT_OK) << "save " << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Sizes, SmallVolumeTest, testing::Values("256k", "300k", "1m", "3m"));

}  // namespace

}  // namespace host
