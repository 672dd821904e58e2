// SPDX-License-Identifier: MIT
// The client inspects or rejects any file, with an amount of memory and time that the size of the file
// limits.
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <new>
#include <sstream>
#include <string>

#include "contextctl/inspect/elf_image.h"
#include "contextctl/inspect/inspect.h"
#include "contextctl/inspect/symbol_names.h"
#include "contextctl/system/failure.h"
#include "fuzz/harness.h"

namespace {

std::size_t allocated = 0;  // bytes in total, freed or not

void* allocate(std::size_t size) {
  allocated += size;
  void* memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

void* operator new(std::size_t size) {
  return allocate(size);
}
void* operator new[](std::size_t size) {
  return allocate(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {  // the sanitizer has its own
  return std::malloc(size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace contextctl {
namespace {

// A file in memory, with a path.
class File {
 public:
  File(const std::uint8_t* data, std::size_t size) : fd_(memfd_create("library", MFD_CLOEXEC)) {
    require(write(fd_, data, size) == static_cast<ssize_t>(size), "a file can be written");
  }
  ~File() { close(fd_); }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  std::string path() const { return "/proc/self/fd/" + std::to_string(fd_); }

 private:
  int fd_;
};

template <typename Call>
void succeedOrFail(const Call& call) {
  try {
    call();
  } catch (const Failure& failure) {
    require(failure.status() == kExitNoAnswer, "a file that cannot be read has its exit status");
  }
}

// Also against itself: whatever fits one file must fit it twice.
void inspectFile(const std::string& path) {
  InspectOptions options;
  options.library = options.against = path;
  options.sysroot = "/proc/self/fdinfo";  // no libraries besides the file itself
  std::ostringstream out;
  const Report report = inspect(options);
  print(report, out);
  printJson(report, out);
  require(!report.findings.empty(), "every report has findings");
}

}  // namespace
}  // namespace contextctl

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const contextctl::File file(data, size);
  contextctl::succeedOrFail(
      [&] { contextctl::inspectFile(file.path()); });  // the first one reads this program
  allocated = 0;
  const std::clock_t begin = std::clock();
  contextctl::succeedOrFail([&] { contextctl::inspectFile(file.path()); });
  contextctl::succeedOrFail([&] { contextctl::readFunctionNames(contextctl::ElfImage(file.path())); });
  require(allocated < (1 << 20) + 500 * size, "the size of the file limits the memory");
  require(std::clock() - begin < 10 * CLOCKS_PER_SEC, "the size of the file limits the time");
  return 0;
}
