// SPDX-License-Identifier: MIT
#include "host/symbol/symbol.h"

#include <dlfcn.h>

#include <filesystem>
#include <string>
#include <typeinfo>

#include <gtest/gtest.h>

#include "tests/support/opened_library.h"
#include "tests/support/temporary_folder.h"

namespace host {

extern "C" void rd();

// As the name of a type, this would be "double restrict".
__attribute__((noinline)) void rd() {}

namespace {

class Observer {};

int g_calls = 0;

constexpr int kLineOfStaticFunction = __LINE__ + 1;
__attribute__((noinline)) void staticFunction() {
  g_calls++;
}

TEST(SymbolTest, StaticFunctionHasNameFileAndLine) {
  const Symbol& symbol = symbolAt(reinterpret_cast<const void*>(staticFunction));
  EXPECT_EQ(symbol.name, "host::(anonymous namespace)::staticFunction()");
  // Compilers that optimise count its first statement as its beginning.
  const std::string file = "symbol_test.cpp:";
  ASSERT_EQ(symbol.location.rfind(file, 0), 0U) << symbol.location;
  const int line = std::stoi(symbol.location.substr(file.size()));
  EXPECT_TRUE(line == kLineOfStaticFunction || line == kLineOfStaticFunction + 1) << line;
  EXPECT_NE(symbol.library.find("host_test"), std::string::npos);
}

TEST(SymbolTest, FunctionInCKeepsItsName) {
  EXPECT_EQ(symbolAt(reinterpret_cast<const void*>(rd)).name, "rd");
}

TEST(SymbolTest, FunctionWithoutDebugInformationHasItsLibrary) {
  void* library = dlopen(MODULE_FOLDER "/libnull_module.so", RTLD_NOW);
  ASSERT_NE(library, nullptr) << dlerror();
  const Symbol& symbol = symbolAt(dlsym(library, "getInstance"));
  EXPECT_EQ(symbol.name, "getInstance");
  EXPECT_EQ(symbol.location, "libnull_module.so");
  EXPECT_EQ(symbol.library, MODULE_FOLDER "/libnull_module.so");
  dlclose(library);
}

// The loader likes to give the place of a closed library to the next one.
TEST(SymbolTest, LibraryInThePlaceOfAClosedOneIsKnown) {
  const TemporaryFolder folder;
  const std::string copy = folder.file("libcopy.so");
  std::filesystem::copy_file(MODULE_FOLDER "/libnull_module.so", copy);
  OpenedLibrary first(MODULE_FOLDER "/libnull_module.so");
  EXPECT_EQ(symbolAt(first.find<void>("getInstance")).location, "libnull_module.so");
  first.close();
  const OpenedLibrary second(copy);
  EXPECT_EQ(symbolAt(second.find<void>("getInstance")).library, copy);
  EXPECT_EQ(symbolAt(second.find<void>("getInstance")).location, "libcopy.so");
}

TEST(SymbolTest, ClosedLibraryIsStillKnown) {
  OpenedLibrary library(MODULE_FOLDER "/libnull_module.so");
  const void* function = library.find<void>("getInstance");
  symbolAt(function);
  library.close();
  EXPECT_EQ(symbolAt(function).name, "getInstance");
}

TEST(SymbolTest, UnknownAddressIsItsOwnName) {
  const Symbol& symbol = symbolAt(reinterpret_cast<const void*>(16));
  EXPECT_EQ(symbol.name, "0x10");
  EXPECT_EQ(symbol.location, "");
  EXPECT_EQ(textOf(symbol), "0x10");
}

TEST(SymbolTest, TextHasLocationInParentheses) {
  EXPECT_EQ(textOf(Symbol{"read_line", "hello.c:12", ""}), "read_line (hello.c:12)");
}

TEST(SymbolTest, TypeIsNamedAsInAProgram) {
  EXPECT_EQ(typeName(typeid(Observer).name()), "host::(anonymous namespace)::Observer");
}

}  // namespace

}  // namespace host
