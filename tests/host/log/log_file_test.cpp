// SPDX-License-Identifier: MIT
// Which files the log is written to, and what happens when they cannot be written.
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstddef>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "host/clock/clock.h"
#include "host/include/cpp2c_host.h"
#include "host/log/log_service.h"
#include "include_c"
#include "tests/host/support/child_process.h"
#include "tests/host/support/error_text.h"
#include "tests/host/support/open_descriptors.h"
#include "tests/host/support/without_standard_input.h"
#include "tests/support/printed_text.h"
#include "tests/support/temporary_folder.h"

namespace host {
namespace {

class LogFileTest : public testing::Test {
 protected:
  void record(const std::string& file, const char* text) const {
    LogService(C_LOG_INFO, file, clock_).record("m", C_LOG_INFO, text);
  }

  std::string refusalOf(const std::string& file) const {
    return errorOf([&] { record(file, "text"); });
  }

  std::string log() const { return folder_.file("log"); }
  std::string notRegular() const { return "-1021 " + log() + ": cannot be written: not a regular file"; }

  TemporaryFolder folder_;
  Clock clock_;
};

TEST_F(LogFileTest, OthersCannotReadANewFile) {
  const mode_t before = umask(0);
  record(log(), "text");
  umask(before);
  struct stat status {};
  ASSERT_EQ(stat(log().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0640U);
}

TEST_F(LogFileTest, SymbolicLinkIsNotFollowed) {
  folder_.write("target", "kept");
  ASSERT_EQ(symlink("target", log().c_str()), 0);
  EXPECT_EQ(refusalOf(log()), notRegular());
  EXPECT_EQ(folder_.read("target"), "kept");
}

TEST_F(LogFileTest, TargetOfASymbolicLinkIsNotCreated) {
  ASSERT_EQ(symlink("target", log().c_str()), 0);
  EXPECT_EQ(refusalOf(log()), notRegular());
  EXPECT_FALSE(std::filesystem::exists(folder_.file("target")));
}

TEST_F(LogFileTest, FifoIsRefusedWithoutWaitingForItsReader) {
  ASSERT_EQ(mkfifo(log().c_str(), 0600), 0);
  EXPECT_EQ(refusalOf(log()), notRegular());
  const int reader = open(log().c_str(), O_RDONLY | O_NONBLOCK);
  EXPECT_EQ(refusalOf(log()), notRegular());
  close(reader);
}

TEST_F(LogFileTest, DeviceIsRefused) {
  EXPECT_EQ(refusalOf("/dev/full"), "-1021 /dev/full: cannot be written: not a regular file");
}

TEST_F(LogFileTest, LogCanBeDiscarded) {
  EXPECT_EQ(refusalOf("/dev/null"), "");
}

TEST_F(LogFileTest, LogCanBeWrittenToTheStandardStreams) {
  PrintedText printed;
  record("/dev/stdout", "to output");
  record("/dev/stderr", "to error");
  EXPECT_NE(printed.standardOutput().find(" info m: to output\n"), std::string::npos);
  EXPECT_NE(printed.standardError().find(" info m: to error\n"), std::string::npos);
}

TEST_F(LogFileTest, LogIsWrittenWithoutStandardInput) {
  const WithoutStandardInput without;
  EXPECT_EQ(refusalOf(log()), "");
  EXPECT_NE(folder_.read("log").find(" info m: text\n"), std::string::npos);
}

TEST_F(LogFileTest, LogCanBeDiscardedWithoutStandardInput) {
  const WithoutStandardInput without;
  EXPECT_EQ(refusalOf("/dev/null"), "");
}

TEST_F(LogFileTest, RefusedFileIsClosed) {
  const WithoutStandardInput without;
  const std::size_t before = openDescriptors();
  EXPECT_NE(refusalOf("/dev/full"), "");
  EXPECT_EQ(openDescriptors(), before);
}

TEST_F(LogFileTest, DescriptorsAreClosed) {
  const std::size_t before = openDescriptors();
  {
    LogService log(C_LOG_INFO, this->log(), clock_);
    log.reopen();
    EXPECT_EQ(openDescriptors(), before + 1);
  }
  EXPECT_EQ(openDescriptors(), before);
}

// Writing beyond this limit fails with EFBIG, as on a full disk.
class FileSizeLimit {
 public:
  FileSizeLimit() : handler_(signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    set(0);
  }
  ~FileSizeLimit() {
    set(before_.rlim_cur);
    signal(SIGXFSZ, handler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  void set(rlim_t size) const {
    const rlimit limit = {size, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }

  void (*handler_)(int);
  rlimit before_{};
};

TEST_F(LogFileTest, LinesThatCannotBeWrittenAreReportedOnce) {
  const std::string printed = inChild([this] {
    LogService log(C_LOG_INFO, this->log(), clock_);
    int pipes[2];
    if (pipe(pipes) != 0 || dup2(pipes[1], STDERR_FILENO) < 0) return std::string("no pipe");
    for (int failure = 0; failure < 2; failure++) {
      {
        const FileSizeLimit limit;
        for (int i = 0; i < 3; i++) log.record("m", C_LOG_INFO, "lost");
      }
      log.record("m", C_LOG_INFO, "written");
    }
    char text[1000];
    const ssize_t size = read(pipes[0], text, sizeof text);
    return std::string(text, static_cast<std::size_t>(size));
  });
  const std::string line = log() + ": cannot be written: File too large\n";
  EXPECT_EQ(printed, line + line);
  EXPECT_EQ(folder_.read("log").find("lost"), std::string::npos);
  EXPECT_NE(folder_.read("log").find("written"), std::string::npos);
}

TEST_F(LogFileTest, RenamedFileIsReplacedWhenReopened) {
  LogService log(C_LOG_INFO, this->log(), clock_);
  log.record("m", C_LOG_INFO, "first");
  std::filesystem::rename(this->log(), folder_.file("old"));
  log.record("m", C_LOG_INFO, "second");
  log.reopen();
  log.record("m", C_LOG_INFO, "third");
  const std::string old = folder_.read("old");
  EXPECT_NE(old.find("first"), std::string::npos);
  EXPECT_NE(old.find("second"), std::string::npos);
  EXPECT_EQ(old.find("third"), std::string::npos);
  EXPECT_EQ(folder_.read("log").find("second"), std::string::npos);
  EXPECT_NE(folder_.read("log").find("third"), std::string::npos);
}

TEST_F(LogFileTest, OldFileIsKeptIfTheNewOneCannotBeOpened) {
  LogService log(C_LOG_INFO, this->log(), clock_);
  std::filesystem::rename(this->log(), folder_.file("old"));
  std::filesystem::create_directory(this->log());
  log.reopen();
  log.record("m", C_LOG_INFO, "next");
  const std::string old = folder_.read("old");
  EXPECT_NE(old.find(" error log: " + this->log() + ": cannot be written: Is a directory\n"),
            std::string::npos);
  EXPECT_NE(old.find("next"), std::string::npos);
}

TEST_F(LogFileTest, RelativeNameIsReopenedInItsFolder) {
  const std::string error = inChild([this]() -> std::string {
    if (chdir(folder_.path().c_str()) != 0) return "no folder";
    LogService log(C_LOG_INFO, "log", clock_);
    if (chdir("/proc") != 0 || std::remove(this->log().c_str()) != 0) return "no other folder";
    log.reopen();
    log.record("m", C_LOG_INFO, "reopened");
    return "";
  });
  EXPECT_EQ(error, "");
  EXPECT_NE(folder_.read("log").find("reopened"), std::string::npos);
}

}  // namespace

}  // namespace host
