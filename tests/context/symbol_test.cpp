// SPDX-License-Identifier: MIT
#include "context/symbol/symbol.h"

#include <dlfcn.h>

#include <string>
#include <typeinfo>

#include <gtest/gtest.h>

namespace {

class Observer {};

int g_calls = 0;

constexpr int kLineOfStaticFunction = __LINE__ + 1;
__attribute__((noinline)) void staticFunction() {
  g_calls++;
}

TEST(SymbolTest, StaticFunctionHasNameFileAndLine) {
  const Symbol& symbol = symbolAt(reinterpret_cast<const void*>(staticFunction));
  EXPECT_EQ(symbol.name, "(anonymous namespace)::staticFunction()");
  // Compilers that optimise count its first statement as its beginning.
  const std::string file = "symbol_test.cpp:";
  ASSERT_EQ(symbol.location.rfind(file, 0), 0U) << symbol.location;
  const int line = std::stoi(symbol.location.substr(file.size()));
  EXPECT_TRUE(line == kLineOfStaticFunction || line == kLineOfStaticFunction + 1) << line;
  EXPECT_NE(symbol.library.find("host_context_test"), std::string::npos);
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
  EXPECT_EQ(typeName(typeid(Observer).name()), "(anonymous namespace)::Observer");
}

}  // namespace
