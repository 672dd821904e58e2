// SPDX-License-Identifier: MIT
// State files that cannot be used, and saves that fail.
#include <signal.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/host_context.h"
#include "host/state/database.h"
#include "include_c"
#include "tests/host/state/opened_connection.h"
#include "tests/host/state/stateful_config.h"
#include "tests/host/support/child_process.h"
#include "tests/host/support/error_text.h"
#include "tests/host/support/memory_log.h"
#include "tests/host/support/open_descriptors.h"
#include "tests/support/printed_text.h"
#include "tests/support/temporary_folder.h"

namespace host {
namespace {

const char kConfig[] = R"({"objects": [{"number": 1, "name": "A.", "leaves": {"X": {"type": "str"}}}]})";

mode_t modeOf(const std::string& file) {
  struct stat status = {};
  EXPECT_EQ(stat(file.c_str(), &status), 0) << file;
  return status.st_mode & 07777U;
}

class StateErrorTest : public testing::Test {
 protected:
  ~StateErrorTest() override { chmod(folder_.path().c_str(), 0700); }

  void save(const std::string& value, const std::string& product = "service") {
    StatefulConfig config(file_, parseConfiguration(kConfig, "test").objects, log_, product);
    config.set("A.X", value);
    EXPECT_EQ(config.save(), C_RESULT_OK);
  }

  std::string saved() { return StatefulConfig(file_, kConfig, log_).valueOf("A.X"); }

  // The error without the name of the file.
  std::string startError() {
    const std::string error = errorOf([&] { StatefulConfig(file_, kConfig, log_); });
    const std::size_t name = error.find(file_ + ": ");
    return name == std::string::npos ? error : error.substr(0, name) + error.substr(name + file_.size() + 2);
  }

  // The error, which must leave the file unchanged.
  std::string refusal() {
    const std::string before = folder_.read("state.db");
    std::string error = startError();
    EXPECT_EQ(folder_.read("state.db"), before);
    return error;
  }

  // Runs in another process: opens the file, writes the error of a second start there, and keeps the file
  // open.
  void hold(int output) {
    const StatefulConfig config(file_, kConfig, log_);
    const std::string line = startError() + '\n';
    if (write(output, line.data(), line.size()) > 0) pause();
  }

  void alter(const char* sql) const { Database(file_).execute(sql); }

  TemporaryFolder folder_;
  const std::string file_ = folder_.file("state.db");
  MemoryLog log_;
};

TEST_F(StateErrorTest, OnlyTheOwnerHasAccessWhateverTheUmask) {
  const mode_t mask = umask(0);
  StatefulConfig config(file_, kConfig, log_);
  config.set("A.X", "secret");
  config.save();
  umask(mask);
  for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
    EXPECT_EQ(modeOf(entry.path()), 0600U) << entry.path();
  }
}

TEST_F(StateErrorTest, FileIsClosed) {
  const std::size_t before = openDescriptors();
  for (const char* what : {"a new file", "an existing file"}) {
    save("1");
    EXPECT_EQ(openDescriptors(), before) << what;
  }
}

TEST_F(StateErrorTest, OrderlyEndLeavesNoJournal) {
  save("1");
  const std::filesystem::directory_iterator files(folder_.path());
  EXPECT_EQ(std::distance(begin(files), end(files)), 1);
}

TEST_F(StateErrorTest, EmptyFileIsInitialised) {
  folder_.write("state.db", "");
  save("1");
  EXPECT_EQ(saved(), "1");
}

TEST_F(StateErrorTest, NameIsAlwaysThatOfAFile) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder_.path());
  for (const char* name : {":memory:", "file:state?mode=memory"}) {
    StatefulConfig(name, kConfig, log_);
    EXPECT_GT(std::filesystem::file_size(folder_.file(name)), 0U);
  }
  std::filesystem::current_path(before);
}

TEST_F(StateErrorTest, MissingFolderIsRefused) {
  EXPECT_EQ(errorOf([&] { StatefulConfig("/no/such/state.db", kConfig, log_); }),
            "-1021 /no/such/state.db: cannot be created: No such file or directory");
}

TEST_F(StateErrorTest, FolderIsRefused) {
  std::filesystem::create_directory(file_);
  EXPECT_EQ(startError(), "-1021 cannot open the file or its journal: Is a directory");
}

TEST_F(StateErrorTest, FileThatIsNotADatabaseIsRefused) {
  folder_.write("state.db", std::string(5000, 'x'));
  EXPECT_EQ(refusal(), "-1023 is not a database");
}

TEST_F(StateErrorTest, DamagedPageIsRefused) {
  save(std::string(10000, 'v'));
  const std::string bytes = folder_.read("state.db");
  ASSERT_GT(bytes.size(), 8192U);
  for (std::size_t page = 4096; page < bytes.size(); page += 4096) {
    std::string damaged = bytes;
    damaged.replace(page, 512, std::string(512, '\xa5'));
    folder_.write("state.db", damaged);
    EXPECT_EQ(refusal(), "-1023 is damaged") << "page at " << page;
  }
}

TEST_F(StateErrorTest, TruncatedFileIsRefused) {
  save(std::string(20000, 'v'));
  const std::string bytes = folder_.read("state.db");
  folder_.write("state.db", bytes.substr(0, bytes.size() / 2));
  EXPECT_EQ(refusal(), "-1023 is damaged");
}

TEST_F(StateErrorTest, MissingTableIsRefused) {
  for (const char* table : {"product", "attribute", "instance", "value"}) {
    std::filesystem::remove(file_);
    save("1");
    alter((std::string("DROP TABLE ") + table).c_str());
    EXPECT_EQ(refusal(), "-1023 is damaged") << table;
  }
}

TEST_F(StateErrorTest, DatabaseOfAnotherProgramIsRefused) {
  folder_.write("state.db", "");
  alter("CREATE TABLE t (x)");
  EXPECT_EQ(refusal(), "-1023 is not a state file, but another program's database");
  alter("PRAGMA application_id = 5");
  EXPECT_EQ(refusal(), "-1023 is not a state file, but another program's database");
}

TEST_F(StateErrorTest, NewerVersionIsRefused) {
  save("1");
  alter("PRAGMA user_version = 2");
  EXPECT_EQ(refusal(), "-1023 has format version 2; supported: 1");
}

TEST_F(StateErrorTest, FileOfAnotherProductIsRefused) {
  save("1", "gateway");
  EXPECT_EQ(refusal(), "-1023 belongs to \"gateway\", not to \"service\"");
}

TEST_F(StateErrorTest, FileInUseIsRefused) {
  const ChildProcess user([&](int output) { hold(output); });
  EXPECT_EQ(user.line(), "-1021 is in use by another process");
  EXPECT_EQ(startError(), "-1021 is in use by another process");
}

TEST_F(StateErrorTest, FileOfAKilledProcessIsFree) {
  ChildProcess user([&](int output) { hold(output); });
  EXPECT_NE(user.line(), "");
  user.kill();
  EXPECT_EQ(startError(), "");
}

TEST_F(StateErrorTest, ReadOnlyFileIsRefused) {
  save("1");
  chmod(file_.c_str(), 0444);
  chmod(folder_.path().c_str(), 0777);
  EXPECT_EQ(asOrdinaryUser([&] { return refusal(); }), "-1021 the file or its folder is read-only");
}

TEST_F(StateErrorTest, UnreadableFileIsRefused) {
  save("1");
  chmod(file_.c_str(), 0);
  chmod(folder_.path().c_str(), 0777);
  EXPECT_EQ(asOrdinaryUser([&] { return startError(); }),
            "-1021 cannot open the file or its journal: Permission denied");
}

TEST_F(StateErrorTest, ReadOnlyFolderIsRefused) {
  save("1");
  chmod(file_.c_str(), 0666);
  chmod(folder_.path().c_str(), 0555);
  EXPECT_EQ(asOrdinaryUser([&] { return refusal(); }), "-1021 the file or its folder is read-only");
}

TEST_F(StateErrorTest, NewFileInAReadOnlyFolderIsRefused) {
  chmod(folder_.path().c_str(), 0555);
  EXPECT_EQ(asOrdinaryUser([&] { return startError(); }), "-1021 cannot be created: Permission denied");
}

TEST_F(StateErrorTest, FailedStartPrintsOneLine) {
  folder_.write("state.db", "no database");
  HostContext context;
  const char* arguments[] = {"service", "--state", file_.c_str()};
  PrintedText printed;
  EXPECT_EQ(context.init(3, reinterpret_cast<std::uintptr_t>(arguments)), C_RESULT_PARAM);
  EXPECT_EQ(printed.standardError(), file_ + ": is not a database\n");
  EXPECT_EQ(context.getCfm(), nullptr);
}

// Limits the size of files. For use in a child process.
class NoRoom {
 public:
  explicit NoRoom(rlim_t size) {
    signal(SIGXFSZ, SIG_IGN);
    limit(size);
  }
  static void end() { limit(RLIM_INFINITY); }

 private:
  static void limit(rlim_t size) {
    const rlimit limits = {size, RLIM_INFINITY};
    setrlimit(RLIMIT_FSIZE, &limits);
  }
};

TEST_F(StateErrorTest, FailedSaveIsLoggedAndDoneByALaterSave) {
  save("old");
  EXPECT_EQ(inChild([&] {
              StatefulConfig config(file_, kConfig, log_);
              config.set("A.X", std::string(100000, 'n'));
              const NoRoom no_room(32768);
              std::string results = std::to_string(config.save()) + ' ' + std::to_string(config.save());
              NoRoom::end();
              for (const std::string& record : log_.records) results += '\n' + record;
              return results + '\n' + std::to_string(config.save());
            }),
            "-1021 -1021\n3 state: " + file_ +
                ": would exceed the limit for file sizes (RLIMIT_FSIZE)\n3 state: " + file_ +
                ": would exceed the limit for file sizes (RLIMIT_FSIZE)\n0");
  EXPECT_EQ(saved(), std::string(100000, 'n'));
}

TEST_F(StateErrorTest, SaveOnAFullDiskIsLoggedAndDoneByALaterSave) {
  const OpenedConnection connection;
  StatefulConfig config(file_, kConfig, log_);
  config.set("A.X", std::string(100000, 'n'));
  sqlite3_exec(connection.get(), "PRAGMA max_page_count = 8", nullptr, nullptr, nullptr);
  EXPECT_EQ(config.save(), C_RESULT_SYSTEM_CALL);
  EXPECT_EQ(log_.records, std::vector<std::string>{"3 state: " + file_ + ": the disk is full"});
  sqlite3_exec(connection.get(), "PRAGMA max_page_count = 1000", nullptr, nullptr, nullptr);
  EXPECT_EQ(config.save(), C_RESULT_OK);
}

TEST_F(StateErrorTest, FailedSaveLeavesTheOldState) {
  save("old");
  EXPECT_EQ(inChild([&] {
              StatefulConfig config(file_, kConfig, log_);
              config.set("A.X", std::string(100000, 'n'));
              const NoRoom no_room(32768);
              return std::to_string(config.save());
            }),
            "-1021");
  EXPECT_EQ(saved(), "old");
}

}  // namespace

}  // namespace host
