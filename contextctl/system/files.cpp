// SPDX-License-Identifier: MIT
#include "contextctl/system/files.h"

#include <errno.h>
#include <fcntl.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

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
  File(const std::string& path, int flags) : path_(path), fd_(open(path.c_str(), flags | O_CLOEXEC, 0600)) {
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

}  // namespace

std::string readFile(const std::string& path, size_t largest) {
  const File file(path, O_RDONLY | O_NONBLOCK);  // opening a pipe must not block
  file.requireRegular(largest);
  return readAll(file.fd(), path, largest);
}

std::string readStandardInput(size_t largest) {
  return readAll(STDIN_FILENO, "standard input", largest);
}

void writeFile(const std::string& path, const std::string& text) {
  const File file(path, O_WRONLY | O_CREAT | O_TRUNC);
  for (size_t done = 0; done < text.size();) {
    const ssize_t size = write(file.fd(), text.data() + done, text.size() - done);
    if (size >= 0) done += static_cast<size_t>(size);
    if (size < 0 && errno != EINTR) fail(path, strerror(errno));
  }
}

}  // namespace contextctl
