// SPDX-License-Identifier: MIT
#include "host/log/log_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <string_view>
#include <system_error>

#include "include_c"
#include "util/error.h"
#include "util/text.h"

namespace host {
namespace {

constexpr const char* kDevices[] = {"/dev/null", "/dev/stdout", "/dev/stderr"};
constexpr mode_t kMode = S_IRUSR | S_IWUSR | S_IRGRP;

std::string failure(const std::string& path, const std::string& why) {
  return path + ": cannot be written: " + why;
}

[[noreturn]] void fail(const std::string& path, const std::string& why) {
  throw util::Error(C_RESULT_SYSTEM_CALL, failure(path, why));
}

std::string absolutePath(const std::string& name) {
  std::error_code error;
  const std::filesystem::path path = std::filesystem::absolute(name, error);
  return error ? name : path.string();
}

bool isDevice(const std::string& path) {
  return std::find(std::begin(kDevices), std::end(kDevices), path) != std::end(kDevices);
}

bool isRegular(int fd) {
  struct stat status {};
  return fstat(fd, &status) == 0 && S_ISREG(status.st_mode);
}

void createFolderOf(const std::string& path) {
  std::error_code ignored;  // open() then fails with the reason
  std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ignored);
}

// O_NONBLOCK keeps a FIFO without a reader from blocking; it has no effect on a regular file.
int openRegular(const std::string& path) {
  createFolderOf(path);
  const int fd = open(path.c_str(),
                      O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | O_NOCTTY, kMode);
  if (fd < 0 && errno != ELOOP && errno != ENXIO) fail(path, std::strerror(errno));
  if (fd >= 0 && isRegular(fd)) return fd;
  if (fd >= 0) close(fd);
  fail(path, "not a regular file");
}

int openFile(const std::string& path) {
  if (!isDevice(path)) return openRegular(path);
  const int fd = open(path.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC | O_NOCTTY);
  if (fd < 0) fail(path, std::strerror(errno));
  return fd;
}

bool writeAll(int fd, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = write(fd, text.data(), text.size());
    if (count < 0 && errno != EINTR) return false;
    text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
  }
  return true;
}

}  // namespace

LogFile::LogFile(const std::string& name) : path_(absolutePath(name)), fd_(openFile(path_)) {}

LogFile::~LogFile() {
  close(fd_);
}

void LogFile::reopen() {
  const int reopened = openFile(path_);
  close(fd_);
  fd_ = reopened;
}

void LogFile::sink_it_(const spdlog::details::log_msg& message) {
  spdlog::memory_buf_t line;
  formatter_->format(message, line);
  const bool written = writeAll(fd_, {line.data(), line.size()});
  if (!written && !failed_) {
    std::fprintf(stderr, "%s\n", util::oneLine(failure(path_, std::strerror(errno))).c_str());
  }
  failed_ = !written;
}

}  // namespace host
