// SPDX-License-Identifier: MIT
#include "host/process/processes.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <new>
#include <string>

#include "binding/context.h"
#include "host/include/cpp2c_host.h"
#include "host/process/output_lines.h"
#include "host/process/shell.h"
#include "include_c"

namespace host {
namespace {

constexpr std::size_t kPart = 4096;

// The program's output so far must precede the command's.
void flushOutput() {
  std::fflush(stdout);
  std::fflush(stderr);
}

class Pipe {
 public:
  Pipe() : open_(pipe2(ends_, O_CLOEXEC) == 0) {}
  ~Pipe() {
    closeWriting();
    closeReading();
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  bool isOpen() const { return open_; }
  int reading() const { return ends_[0]; }
  int writing() const { return ends_[1]; }
  void closeReading() { closeEnd(ends_[0]); }
  void closeWriting() { closeEnd(ends_[1]); }

 private:
  static void closeEnd(int& end) {
    if (end >= 0) close(end);
    end = -1;
  }

  int ends_[2] = {-1, -1};
  const bool open_;
};

// Returns the number of bytes read, 0 at the end of the output, or -1 if it cannot be read.
ssize_t readPart(int output, std::size_t size, OutputLines& lines) {
  char part[kPart];
  ssize_t count = -1;
  do {
    count = read(output, part, std::min(size, kPart));
  } while (count < 0 && errno == EINTR);
  if (count > 0) lines.add({part, static_cast<std::size_t>(count)});
  return count;
}

// Only what is in the pipe now: a process in the background may write without end.
// Returns false if it cannot be read.
bool readRest(int output, OutputLines& lines) {
  int available = 0;
  if (ioctl(output, FIONREAD, &available) != 0) return false;
  auto left = static_cast<std::size_t>(available);
  while (left > 0) {
    const ssize_t count = readPart(output, left, lines);
    if (count <= 0) return count == 0;
    left -= static_cast<std::size_t>(count);
  }
  return true;
}

bool waitForAny(pollfd (&awaited)[2]) {
  int ready = -1;
  do {
    ready = poll(awaited, 2, -1);
  } while (ready < 0 && errno == EINTR);
  return ready > 0;
}

// Reads until the shell ends: processes that it leaves in the background keep the pipe open. Without a
// descriptor for the end of the shell, poll() waits for the pipe alone. Returns false if the output cannot be
// read.
bool readOutput(int output, const Shell& shell, OutputLines& lines) {
  pollfd awaited[] = {{output, POLLIN, 0}, {shell.end(), POLLIN, 0}};
  while (waitForAny(awaited)) {
    if (awaited[1].revents != 0) return readRest(output, lines);
    const ssize_t count = readPart(output, kPart, lines);
    if (count <= 0) return count == 0;
  }
  return false;
}

}  // namespace

int Processes::run(const char* command) {
  if (command == nullptr) return C_RESULT_PARAM;
  flushOutput();
  return Shell(command, Shell::kInherited).wait();
}

int Processes::runLogged(const char* command) {
  if (command == nullptr) return C_RESULT_PARAM;
  flushOutput();
  Pipe output;
  if (!output.isOpen()) return C_RESULT_SYSTEM_CALL;
  const Shell shell(command, output.writing());
  output.closeWriting();
  try {
    OutputLines lines(log_);
    if (!readOutput(output.reading(), shell, lines)) {
      const std::string text =
          std::string("the output of the command cannot be read: ") + std::strerror(errno);
      output.closeReading();  // the command must not wait for a reader
      log_.record("command", C_LOG_ERROR, text.c_str());
    }
    lines.finish();
  } catch (const std::bad_alloc&) {
    output.closeReading();
    shell.wait();
    throw;
  }
  return shell.wait();
}

}  // namespace host
