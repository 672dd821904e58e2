// SPDX-License-Identifier: MIT
#include "contextctl/system/files.h"

#include <errno.h>
#include <fcntl.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "contextctl/system/failure.h"

namespace contextctl {
namespace {

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
  throw Failure(kExitNoAnswer, path + ": " + reason);
}

void requireSize(const std::string& path, size_t size, size_t largest) {
  if (size > largest << 20) fail(path, "larger than " + std::to_string(largest) + " MiB");
}

class File {
 public:
  File(const std::string& path, int flags) : path_(path), fd_(open(path.c_str(), flags | O_CLOEXEC)) {
    if (fd_ == -1) fail(path, strerror(errno));
  }
  ~File() { close(fd_); }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  int fd() const { return fd_; }

  void requireRegular(size_t largest) const {
    struct stat status = {};
    if (fstat(fd_, &status) != 0) fail(path_, strerror(errno));
    if (!S_ISREG(status.st_mode)) fail(path_, "not a regular file");
    requireSize(path_, static_cast<size_t>(status.st_size), largest);
  }

 private:
  std::string path_;
  int fd_;
};

// A file of the kernel may be longer than its size says.
std::string readAll(int fd, const std::string& path, size_t largest) {
  std::string text;
  char buffer[65536];
  for (;;) {
    const ssize_t size = read(fd, buffer, sizeof buffer);
    if (size == 0) return text;
    if (size > 0) text.append(buffer, static_cast<size_t>(size));
    requireSize(path, text.size(), largest);
    if (size < 0 && errno != EINTR) fail(path, strerror(errno));
  }
}

void writeAll(int fd, const std::string& path, const std::string& text) {
  for (size_t done = 0; done < text.size();) {
    const ssize_t size = write(fd, text.data() + done, text.size() - done);
    if (size >= 0) done += static_cast<size_t>(size);
    if (size < 0 && errno != EINTR) fail(path, strerror(errno));
  }
}

// The file that symbolic links lead to, which need not exist.
std::string followLinks(std::filesystem::path path) {
  constexpr int kMostLinks = 40;
  for (int i = 0; i < kMostLinks && std::filesystem::is_symlink(path); i++)
    path = path.parent_path() / std::filesystem::read_symlink(path);
  return path;
}

std::string folderOf(const std::string& path) {
  const std::string folder = std::filesystem::path(path).parent_path();
  return folder.empty() ? "." : folder;
}

// A new file in the folder of another one, which it replaces in the end.
class Replacement {
 public:
  explicit Replacement(const std::string& path) : path_(path), name_(folderOf(path) + "/.contextctl-XXXXXX") {
    fd_ = mkostemp(name_.data(), O_CLOEXEC);
    if (fd_ == -1) fail(path_, std::string("cannot create a file in its folder: ") + strerror(errno));
  }
  ~Replacement() {
    close(fd_);
    if (!done_) unlink(name_.c_str());
  }
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;

  int fd() const { return fd_; }
  void require(bool success) const {
    if (!success) fail(path_, strerror(errno));
  }
  void replace() {
    require(fsync(fd_) == 0);
    require(rename(name_.c_str(), path_.c_str()) == 0);
    done_ = true;
  }

 private:
  std::string path_;
  std::string name_;
  int fd_ = -1;
  bool done_ = false;
};

// Only root can give a file to another user.
void keepOwnerAndMode(const Replacement& replacement, const struct stat& old) {
  const bool is_kept = fchown(replacement.fd(), old.st_uid, old.st_gid) == 0 ||
                       fchown(replacement.fd(), static_cast<uid_t>(-1), old.st_gid) == 0;
  const mode_t groups = is_kept ? 0777 : 0707;  // another group must not get the rights of the old one
  replacement.require(fchmod(replacement.fd(), old.st_mode & groups) == 0);
}

// `old`: the present file, or null.
void replaceFile(const std::string& path, const struct stat* old, const std::string& text) {
  if (old != nullptr && faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0) fail(path, strerror(errno));
  Replacement replacement(path);
  if (old != nullptr) keepOwnerAndMode(replacement, *old);
  writeAll(replacement.fd(), path, text);
  replacement.replace();
  const File folder(folderOf(path), O_RDONLY | O_DIRECTORY);
  if (fsync(folder.fd()) != 0 && errno != EINVAL) fail(path, strerror(errno));
}

}  // namespace

std::string readFile(const std::string& path, size_t largest) {
  const File file(path, O_RDONLY | O_NONBLOCK);  // opening a pipe must not block
  file.requireRegular(largest);
  return readAll(file.fd(), path, largest);
}

std::string readStandardInput(size_t largest) {
  return readAll(STDIN_FILENO, "standard input", largest);
}

// Devices and pipes are written to; a regular file is replaced.
void writeFile(const std::string& path, const std::string& text) {
  struct stat status = {};
  const bool exists = stat(path.c_str(), &status) == 0;
  if (!exists && errno != ENOENT) fail(path, strerror(errno));
  if (!exists || S_ISREG(status.st_mode)) {
    replaceFile(followLinks(path), exists ? &status : nullptr, text);
  } else {
    const File file(path, O_WRONLY);
    writeAll(file.fd(), path, text);
  }
}

}  // namespace contextctl
