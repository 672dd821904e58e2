// SPDX-License-Identifier: MIT
// DllMgr: an opened library and its instance. The macros in capitals are paths of libraries.
#include "binding/dll_mgr.h"

#include <cstring>
#include <string>

#include <dlfcn.h>
#include <gtest/gtest.h>

#include "binding/context.h"
#include "tests/binding/context_libraries/entry_counts.h"
#include "tests/support/opened_library.h"
#include "tests/support/printed_text.h"

namespace {

// The test's own handle of a library that a DllMgr also opens.
class ObservedLibrary {
 public:
  explicit ObservedLibrary(const std::string& path) : path_(path), library_(path) {}

  EntryCounts& entries() { return *library_.find<EntryCounts>("entries"); }

  bool staysLoadedWithoutThisHold() {
    library_.close();
    return OpenedLibrary::isLoaded(path_);
  }

 private:
  std::string path_;
  OpenedLibrary library_;
};

// A context at any address, because it is only passed on.
IContext* someContext(int& place) {
  return reinterpret_cast<IContext*>(&place);
}

// Word `index` of an object.
void* wordOf(const DllMgr& manager, std::size_t index) {
  void* word;
  std::memcpy(&word, reinterpret_cast<const char*>(&manager) + index * sizeof word, sizeof word);
  return word;
}

TEST(DllMgrTest, FieldsAreInstanceHandleAndPath) {
  static_assert(sizeof(DllMgr) == 2 * sizeof(void*) + sizeof(std::string));
  ObservedLibrary library(COUNTING_CONTEXT);
  DllMgr manager(COUNTING_CONTEXT);
  EXPECT_EQ(wordOf(manager, 0), nullptr);

  IContext* instance = manager.getInstance(nullptr);
  EXPECT_EQ(wordOf(manager, 0), instance);
  void* own_handle = dlopen(COUNTING_CONTEXT, RTLD_LAZY | RTLD_NOLOAD);
  EXPECT_EQ(wordOf(manager, 1), own_handle);
  dlclose(own_handle);
  const auto* path = static_cast<const std::string*>(
      static_cast<const void*>(reinterpret_cast<const char*>(&manager) + 2 * sizeof(void*)));
  EXPECT_EQ(*path, COUNTING_CONTEXT);
}

TEST(DllMgrTest, ConstructorOpensTheLibraryWithoutCallingIt) {
  ObservedLibrary library(COUNTING_CONTEXT);
  DllMgr manager(COUNTING_CONTEXT);
  EXPECT_EQ(library.entries().obtained, 0);
  EXPECT_TRUE(library.staysLoadedWithoutThisHold());
}

TEST(DllMgrTest, SymbolsAreAvailableToOtherLibraries) {
  EXPECT_EQ(dlsym(RTLD_DEFAULT, "entries"), nullptr);
  DllMgr manager(COUNTING_CONTEXT);
  EXPECT_NE(dlsym(RTLD_DEFAULT, "entries"), nullptr);
}

TEST(DllMgrTest, FunctionsAreResolvedLazily) {
  ASSERT_FALSE(OpenedLibrary(LAZY_CONTEXT)) << "The library should not open with all functions resolved.";
  DllMgr manager(LAZY_CONTEXT);
  EXPECT_NE(manager.getInstance(nullptr), nullptr);
}

TEST(DllMgrTest, FailedOpenYieldsNoInstanceAndPrintsNothing) {
  PrintedText printed;
  {
    DllMgr manager("/there/is/no/such/library.so");
    EXPECT_EQ(wordOf(manager, 1), nullptr);
    EXPECT_EQ(manager.getInstance(nullptr), nullptr);
    manager.relInstance();
  }
  EXPECT_EQ(printed.standardError(), "");
  EXPECT_EQ(printed.standardOutput(), "");
}

TEST(DllMgrTest, GetInstancePassesItsArgumentToTheLibrary) {
  int place = 0;
  ObservedLibrary library(COUNTING_CONTEXT);
  DllMgr manager(COUNTING_CONTEXT);
  EXPECT_EQ(manager.getInstance(someContext(place)), library.entries().next_instance);
  EXPECT_EQ(library.entries().last_caller, &place);
}

TEST(DllMgrTest, InstanceIsRequestedOnceWhateverTheArgument) {
  int place = 0;
  ObservedLibrary library(COUNTING_CONTEXT);
  DllMgr manager(COUNTING_CONTEXT);
  IContext* first = manager.getInstance(nullptr);
  EXPECT_EQ(manager.getInstance(someContext(place)), first);
  EXPECT_EQ(library.entries().obtained, 1);
}

TEST(DllMgrTest, InstanceIsRequestedAgainAfterNull) {
  ObservedLibrary library(NULL_INSTANCE);
  DllMgr manager(NULL_INSTANCE);
  EXPECT_EQ(manager.getInstance(nullptr), nullptr);
  EXPECT_EQ(manager.getInstance(nullptr), nullptr);
  EXPECT_EQ(library.entries().obtained, 2);
}

TEST(DllMgrTest, MissingGetInstanceYieldsNullAndPrintsNothing) {
  PrintedText printed;
  {
    DllMgr manager(NO_GET_INSTANCE);
    EXPECT_EQ(manager.getInstance(nullptr), nullptr);
  }
  EXPECT_EQ(printed.standardError(), "");
  EXPECT_EQ(printed.standardOutput(), "");
}

TEST(DllMgrTest, ReleasePassesTheInstanceToTheLibraryAndForgetsIt) {
  ObservedLibrary library(COUNTING_CONTEXT);
  DllMgr manager(COUNTING_CONTEXT);
  IContext* instance = manager.getInstance(nullptr);
  manager.relInstance();
  EXPECT_EQ(library.entries().released, 1);
  EXPECT_EQ(library.entries().last_released, instance);
  EXPECT_EQ(wordOf(manager, 0), nullptr);

  manager.getInstance(nullptr);
  EXPECT_EQ(library.entries().obtained, 2);
}

TEST(DllMgrTest, ReleaseWithoutAnInstancePassesNullToTheLibrary) {
  int place = 0;
  ObservedLibrary library(COUNTING_CONTEXT);
  library.entries().last_released = &place;
  DllMgr manager(COUNTING_CONTEXT);
  manager.relInstance();
  EXPECT_EQ(library.entries().released, 1);
  EXPECT_EQ(library.entries().last_released, nullptr);
}

TEST(DllMgrTest, MissingRelInstanceKeepsTheInstanceAndPrintsNothing) {
  PrintedText printed;
  ObservedLibrary library(NO_REL_INSTANCE);
  {
    DllMgr manager(NO_REL_INSTANCE);
    IContext* instance = manager.getInstance(nullptr);
    manager.relInstance();
    EXPECT_EQ(wordOf(manager, 0), instance);
    EXPECT_EQ(manager.getInstance(nullptr), instance);
    EXPECT_EQ(library.entries().obtained, 1);
  }
  EXPECT_EQ(printed.standardError(), "");
  EXPECT_EQ(printed.standardOutput(), "");
}

TEST(DllMgrTest, ReleasePrintsTheLastLoaderError) {
  dlopen("libthere-is-no-such-library.so", RTLD_LAZY);
  const std::string error = dlerror();
  DllMgr manager(PENDING_ERROR);
  manager.getInstance(nullptr);

  PrintedText printed;
  manager.relInstance();
  EXPECT_EQ(printed.standardError(), "dlsym: " + error + "\n");
  EXPECT_EQ(printed.standardOutput(), "");
  EXPECT_EQ(dlerror(), nullptr);
}

TEST(DllMgrTest, ReleaseForgetsTheInstanceDespiteALoaderError) {
  DllMgr manager(PENDING_ERROR);
  manager.getInstance(nullptr);
  PrintedText printed;
  manager.relInstance();
  EXPECT_NE(printed.standardError(), "");
  EXPECT_EQ(printed.standardOutput(), "");
  EXPECT_EQ(wordOf(manager, 0), nullptr);
}

TEST(DllMgrTest, ReleaseWithoutALoaderErrorPrintsNothing) {
  DllMgr manager(COUNTING_CONTEXT);
  manager.getInstance(nullptr);
  PrintedText printed;
  manager.relInstance();
  EXPECT_EQ(printed.standardError(), "");
  EXPECT_EQ(printed.standardOutput(), "");
}

TEST(DllMgrTest, DestructorReleasesTheInstance) {
  ObservedLibrary library(COUNTING_CONTEXT);
  IContext* instance;
  {
    DllMgr manager(COUNTING_CONTEXT);
    instance = manager.getInstance(nullptr);
  }
  EXPECT_EQ(library.entries().released, 1);
  EXPECT_EQ(library.entries().last_released, instance);
}

TEST(DllMgrTest, DestructorAfterAReleasePassesNullToTheLibrary) {
  ObservedLibrary library(COUNTING_CONTEXT);
  {
    DllMgr manager(COUNTING_CONTEXT);
    manager.getInstance(nullptr);
    manager.relInstance();
  }
  EXPECT_EQ(library.entries().released, 2);
  EXPECT_EQ(library.entries().last_released, nullptr);
}

TEST(DllMgrTest, DestructorClosesTheLibrary) {
  ObservedLibrary library(COUNTING_CONTEXT);
  { DllMgr manager(COUNTING_CONTEXT); }
  EXPECT_FALSE(library.staysLoadedWithoutThisHold());
}

TEST(DllMgrTest, DestructorClosesALibraryWithoutRelInstance) {
  ObservedLibrary library(NO_REL_INSTANCE);
  {
    DllMgr manager(NO_REL_INSTANCE);
    manager.getInstance(nullptr);
  }
  EXPECT_FALSE(library.staysLoadedWithoutThisHold());
}

}  // namespace
