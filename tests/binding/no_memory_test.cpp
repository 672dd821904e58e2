// SPDX-License-Identifier: MIT
// The library when memory allocation fails. The linker redirects its calls of the allocator to this file.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <vector>

#include "tests/binding/relative_access.h"
#include "tests/support/printed_text.h"
#include "tests/support/recording_test.h"

void* realMalloc(std::size_t size) __asm__("__real_malloc");
void* realCalloc(std::size_t count, std::size_t size) __asm__("__real_calloc");
void realFree(void* block) __asm__("__real_free");
void* divertedMalloc(std::size_t size) __asm__("__wrap_malloc");
void* divertedCalloc(std::size_t count, std::size_t size) __asm__("__wrap_calloc");
void divertedFree(void* block) __asm__("__wrap_free");

namespace {

// The blocks that the library allocates while `watched` is set.
struct Allocations {
  bool watched = false;
  std::size_t refused = SIZE_MAX;  // number of the allocation that fails, counted from 0
  std::vector<std::size_t> sizes;
  std::vector<void*> live;
  int objects = 0;  // number of calls of `new`

  void* take(std::size_t size, void* (*allocate)(std::size_t)) {
    if (!watched) return allocate(size);
    sizes.push_back(size);
    void* block = sizes.size() - 1 != refused ? allocate(size) : nullptr;
    if (block != nullptr) live.push_back(block);
    return block;
  }

  void giveBack(void* block) {
    if (watched) live.erase(std::remove(live.begin(), live.end(), block), live.end());
  }
};

Allocations allocations;

void* zeroed(std::size_t size) {
  return realCalloc(1, size);
}

}  // namespace

void* divertedMalloc(std::size_t size) {
  return allocations.take(size, realMalloc);
}

void* divertedCalloc(std::size_t count, std::size_t size) {
  return allocations.take(count * size, zeroed);
}

void divertedFree(void* block) {
  allocations.giveBack(block);
  realFree(block);
}

void* operator new(std::size_t size) {
  if (allocations.watched) ++allocations.objects;
  void* object = realMalloc(size);
  if (object == nullptr) throw std::bad_alloc();
  return object;
}

void operator delete(void* object) noexcept {
  realFree(object);
}

void operator delete(void* object, std::size_t /*size*/) noexcept {
  realFree(object);
}

namespace {

class NoMemoryTest : public RecordingTest, public ::testing::WithParamInterface<RelativeAccess> {
 protected:
  NoMemoryTest() {
    allocations = {};
    cfm.leaves["A.x"] = {"int", "7"};
  }

  ~NoMemoryTest() override { allocations = {}; }

  int access(const char* base = "A.B", const char* relpath = "PARENT.") {
    allocations.watched = true;
    const int result = GetParam().run(base, relpath, "x", "int");
    allocations.watched = false;
    return result;
  }

  Calls report() {
    return {"context.debugOut('cpp2c', '" + std::string(GetParam().function) + ": Leave: memory out!\n')"};
  }
};

TEST_P(NoMemoryTest, TwoBlocksAreAllocatedAndFreed) {
  EXPECT_EQ(access(), 0);
  EXPECT_EQ(allocations.sizes, std::vector<std::size_t>({512, 512}));
  EXPECT_TRUE(allocations.live.empty());
}

TEST_P(NoMemoryTest, BlocksAreFreedAfterTheTypedFunctionHasReturned) {
  std::vector<std::size_t> held;
  log.on_call = [&](const std::string& /*call*/) { held.push_back(allocations.live.size()); };
  EXPECT_EQ(access(), 0);
  log.on_call = nullptr;
  EXPECT_FALSE(held.empty());
  for (const std::size_t blocks : held) EXPECT_EQ(blocks, 2U);
}

TEST_P(NoMemoryTest, FirstBlockIsFreedBeforeTheFailureOfTheSecondIsReported) {
  allocations.refused = 1;
  std::size_t held = 1;
  log.on_call = [&](const std::string& /*call*/) { held = allocations.live.size(); };
  EXPECT_EQ(access(), -1018);
  log.on_call = nullptr;
  EXPECT_EQ(held, 0U);
}

TEST_P(NoMemoryTest, BlocksAreFreedIfTheLeafIsUnknown) {
  EXPECT_EQ(access("B.C"), -1022);
  EXPECT_TRUE(allocations.live.empty());
}

TEST_P(NoMemoryTest, FailureOfTheFirstAllocationIsReported) {
  allocations.refused = 0;
  EXPECT_EQ(access(), -1018);
  EXPECT_EQ(calls(), report());
  EXPECT_EQ(allocations.sizes.size(), 1U);
}

TEST_P(NoMemoryTest, FailureOfTheSecondAllocationIsReportedAndTheFirstBlockFreed) {
  allocations.refused = 1;
  EXPECT_EQ(access(), -1018);
  EXPECT_EQ(calls(), report());
  EXPECT_EQ(allocations.sizes.size(), 2U);
  EXPECT_TRUE(allocations.live.empty());
}

TEST_P(NoMemoryTest, FailureIsReportedBeforeThePathIsFollowed) {
  allocations.refused = 1;
  EXPECT_EQ(access("A", "PARENT."), -1018);
  EXPECT_EQ(calls(), report());
}

TEST_P(NoMemoryTest, NullStringsAreRejectedBeforeMemoryIsAllocated) {
  EXPECT_EQ(access(nullptr), -1023);
  EXPECT_TRUE(allocations.sizes.empty());
}

INSTANTIATE_TEST_SUITE_P(RelativeAccess, NoMemoryTest, relativeAccesses(), verbOf);

// With link-time optimisation, the compiler may inline the functions into this file and then drop the write
// to `watched`, because malloc() does not read it. Calls through these volatile pointers are not inlined.
decltype(&c_malloc) volatile take_block = c_malloc;
decltype(&c_free) volatile give_back_block = c_free;

class AllocatorTest : public RecordingTest {
 protected:
  AllocatorTest() { allocations = {}; }
  ~AllocatorTest() override { allocations = {}; }

  // Runs `use` with `watched` set.
  template <typename Use>
  static void watch(Use use) {
    allocations.watched = true;
    use();
    allocations.watched = false;
  }
};

TEST_F(AllocatorTest, FailedAllocationReturnsNullAndPrintsNothing) {
  PrintedText printed;
  char text = '\0';
  char* block = &text;
  allocations.refused = 0;
  watch([&block] { block = take_block(16, "here.c", 1); });
  EXPECT_EQ(block, nullptr);
  EXPECT_EQ(calls(), Calls());
  EXPECT_EQ(printed.standardOutput(), "");
  EXPECT_EQ(printed.standardError(), "");
}

TEST_F(AllocatorTest, BlockHasTheRequestedSizeAndIsFreed) {
  watch([] { give_back_block(take_block(48, "here.c", 1)); });
  EXPECT_EQ(allocations.sizes, std::vector<std::size_t>({48}));
  EXPECT_TRUE(allocations.live.empty());
}

// A context that allocates no memory itself.
class FrugalContext : public RecordingContext {
 public:
  using RecordingContext::RecordingContext;

  int commands = 0;

  int systemCall(const char* /*command*/) override { return ++commands; }
  int systemCall2(const char* /*command*/) override { return ++commands; }
  int popenCall(const char* /*command*/) override { return ++commands; }
};

// A configuration service with one leaf that allocates no memory itself.
class FrugalCfm : public RecordingCfm, private ICfmNode {
 public:
  using RecordingCfm::RecordingCfm;

  std::string type;

  ICfmNode* getNode(std::string /*fullname*/) override { return this; }
  int releaseNode(ICfmNode* /*node*/) override { return 0; }
  int setValue(std::string /*fullname*/, std::string /*value*/, int /*option*/) override { return 0; }

 private:
  std::string getType() override { return type; }
  std::string getValue() override { return ""; }
  unsigned int getLength() override { return 0; }
  int reserved5() override { return 0; }
};

class FrugalCfmContext : public RecordingContext {
 public:
  explicit FrugalCfmContext(CallLog& calls) : RecordingContext(calls), frugal(calls) {}

  FrugalCfm frugal;

  ICfm* getCfm() override { return &frugal; }
};

// Too long for the small-string optimisation.
constexpr const char* kLongName = "Device.Interfaces.Ethernet.Description.Of.The.Port";

TEST_F(AllocatorTest, WriteCreatesStringsOnlyForTheArgumentsOfTheService) {
  FrugalCfmContext frugal(log);
  releaseContext(nullptr);
  proxy.instance = &frugal;
  getContext();
  frugal.frugal.type = "str";
  int result = -1;
  watch([&] { result = c_cfm_set_value(kLongName, 0, "str", kLongName, 1); });
  EXPECT_EQ(result, 0);
  EXPECT_EQ(allocations.objects, 3);  // the argument of getNode() and the two of setValue()
}

TEST_F(AllocatorTest, CommandsAllocateNoMemory) {
  FrugalContext frugal(log);
  releaseContext(nullptr);
  proxy.instance = &frugal;
  getContext();
  char format[] = "%s %d";
  PrintedText printed;
  watch([&format] {
    c_system_call("%s %d", "ls", 1);
    c_system_call2(format, "ls", 1);
    c_popen_call(format, "ls", 1);
  });
  EXPECT_EQ(frugal.commands, 3);
  EXPECT_TRUE(allocations.sizes.empty());
  EXPECT_EQ(allocations.objects, 0);
}

}  // namespace
