// SPDX-License-Identifier: MIT
// What a failed c_context_init() leaves: one line, and a context that can be initialised again.
#include <errno.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/host_context.h"
#include "include_c"
#include "tests/host/support/child_process.h"
#include "tests/support/printed_text.h"
#include "tests/support/temporary_folder.h"

namespace {

constexpr long kNever = -1;

long g_allocations_left = kNever;  // before one fails
long g_allocated = 0;              // memory blocks

}  // namespace

// Replaces the allocator of the whole test program.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  if (g_allocations_left != kNever && g_allocations_left-- == 0) return nullptr;
  void* block = std::malloc(size > 0 ? size : 1);
  if (block != nullptr) g_allocated++;
  return block;
}

void* operator new(std::size_t size) {
  void* block = operator new(size, std::nothrow);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void operator delete(void* block) noexcept {
  if (block != nullptr) g_allocated--;
  std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
  operator delete(block);
}

namespace host {
namespace {

using Arguments = std::vector<std::string>;

std::size_t openDescriptors() {
  const std::filesystem::directory_iterator all("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

class FailedInitTest : public testing::Test {
 protected:
  struct Attempt {
    int result;
    std::string printed;
    long leaked;  // memory blocks
  };

  struct Limits {
    long allocations;
    rlim_t descriptors;
  };

  Attempt init(const Arguments& arguments, const Limits& limits = {kNever, RLIM_INFINITY}) {
    std::vector<const char*> pointers = {"service"};
    for (const std::string& argument : arguments) pointers.push_back(argument.c_str());
    PrintedText printed;
    const long allocated = g_allocated;
    const int result = initWithin(limits, pointers);
    const long leaked = g_allocated - allocated;
    return {result, printed.standardError(), leaked};
  }

  int initWithin(const Limits& limits, const std::vector<const char*>& arguments) {
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    const rlimit limited = {std::min(before.rlim_cur, limits.descriptors), before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &limited);
    g_allocations_left = limits.allocations;
    const int result = context_.init(arguments.size(), reinterpret_cast<std::uintptr_t>(arguments.data()));
    g_allocations_left = kNever;
    setrlimit(RLIMIT_NOFILE, &before);
    return result;
  }

  // Without files in JSON: the JSON library cannot free memory without allocating some.
  Arguments options() const {
    return {"--log-file", folder_.file("log"),     "--state",  folder_.file("state.db"),
            "--control",  folder_.file("control"), "--strict", "--log-reopen"};
  }

  TemporaryFolder folder_;
  HostContext context_;
};

TEST_F(FailedInitTest, EachLackOfMemoryIsReportedAndLeavesNothing) {
  const Arguments arguments = options();
  const std::string message = std::string(program_invocation_short_name) + ": out of memory\n";
  const std::size_t descriptors = openDescriptors();
  long allocations = 0;
  for (;; allocations++) {
    const Attempt attempt = init(arguments, {allocations, RLIM_INFINITY});
    if (attempt.result == C_RESULT_OK) break;
    ASSERT_EQ(attempt.result, C_RESULT_NO_MEMORY) << allocations;
    ASSERT_EQ(attempt.printed, message) << allocations;
    ASSERT_EQ(attempt.leaked, 0) << allocations;
    ASSERT_EQ(openDescriptors(), descriptors) << allocations;
  }
  EXPECT_GT(allocations, 100);
}

TEST_F(FailedInitTest, FailureOfTheLastServiceLeavesNothing) {
  Arguments arguments = options();
  for (std::string& argument : arguments) {
    if (argument == folder_.file("control")) argument = folder_.file("missing/control");
  }
  init(arguments);  // creates what stays: the files
  const std::size_t descriptors = openDescriptors();
  const Attempt attempt = init(arguments);
  EXPECT_EQ(attempt.result, C_RESULT_SYSTEM_CALL);
  EXPECT_EQ(attempt.printed, folder_.file("missing/control") +
                                 ": cannot create the control socket: No such file or directory\n");
  EXPECT_EQ(attempt.leaked, 0);
  EXPECT_EQ(openDescriptors(), descriptors);
  EXPECT_EQ(init(options()).result, C_RESULT_OK);
}

// Enters folders with so long a path that its name can only be found by reading each of them, and makes one
// of them unreadable.
bool enterFolderWithoutName() {
  const std::string name(200, 'x');
  for (int i = 0; i < 25; i++) {
    if (mkdir(name.c_str(), 0700) != 0 || chdir(name.c_str()) != 0) return false;
  }
  return chmod("..", 0300) == 0;
}

TEST_F(FailedInitTest, UnknownCurrentFolderIsReportedInOneLine) {
  const std::string result = asOrdinaryUser([&]() -> std::string {
    const TemporaryFolder folder;
    if (chdir(folder.path().c_str()) != 0 || !enterFolderWithoutName()) return "no folder without a name";
    const Attempt attempt = init({"--state", "state.db"});
    if (chmod("..", 0700) != 0) return "cannot restore the folder";
    return std::to_string(attempt.result) + ' ' + attempt.printed;
  });
  EXPECT_EQ(result.substr(0, 6), "-1021 ");
  EXPECT_EQ(result.find('\n'), result.size() - 1) << result;
}

// init() opens several descriptors: each limit makes another one fail.
TEST_F(FailedInitTest, EachLackOfDescriptorsIsReportedInOneLine) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer's check of virtual calls needs descriptors itself";
#endif
  const Arguments arguments = options();
  std::string result;
  for (rlim_t limit = openDescriptors(); result != "0 " && limit < 100; limit++) {
    result = inChild([&] {
      const Attempt attempt = init(arguments, {kNever, limit});
      return std::to_string(attempt.result) + ' ' + attempt.printed;
    });
    if (result == "0 ") break;
    EXPECT_EQ(result.substr(0, 6), "-1021 ") << limit;
    EXPECT_EQ(result.find('\n'), result.size() - 1) << limit;
  }
  EXPECT_EQ(result, "0 ");
}

}  // namespace

}  // namespace host
