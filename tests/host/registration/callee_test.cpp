// SPDX-License-Identifier: MIT
#include "host/registration/callee.h"

#include <string>

#include <gtest/gtest.h>

#include "binding/context.h"
#include "boot/boot_context.h"
#include "boot/module.h"
#include "host/symbol/symbol.h"
#include "include_c"

namespace host {
namespace {

int load() {
  return 1;
}
int start() {
  return 2;
}
int configure(const char* /*name*/, int /*arg*/) {
  return 3;
}
int run() {
  return 4;
}
int unconfigure(const char* /*name*/, int /*arg*/) {
  return 5;
}
int unload() {
  return 6;
}
int receive(const char* /*name*/) {
  return 7;
}

// A module as a C program registers it.
class CModuleCalleeTest : public testing::Test {
 protected:
  ~CModuleCalleeTest() override { c_module_unregist(handle_); }

  const void* functionFor(const char* operation) const {
    return calleeOf(*static_cast<IModule*>(handle_), operation).function;
  }

  template <typename Function>
  static const void* addressOf(Function* function) {
    return reinterpret_cast<const void*>(function);
  }

  ModuleCallbacks table_ = {load, start, configure, run, unconfigure, unload, receive};
  void* handle_ = c_module_regist(&table_);
};

TEST_F(CModuleCalleeTest, EachStepHasItsFunction) {
  EXPECT_EQ(functionFor("onLoad"), addressOf(load));
  EXPECT_EQ(functionFor("onStart"), addressOf(start));
  EXPECT_EQ(functionFor("onConfig"), addressOf(configure));
  EXPECT_EQ(functionFor("onRun"), addressOf(run));
  EXPECT_EQ(functionFor("onUnconfig"), addressOf(unconfigure));
  EXPECT_EQ(functionFor("onUnload"), addressOf(unload));
  EXPECT_EQ(functionFor("recvDependence"), addressOf(receive));
}

TEST_F(CModuleCalleeTest, StopHasNoFunction) {
  EXPECT_TRUE(calleeOf(*static_cast<IModule*>(handle_), "onStop").isEmpty());
}

TEST_F(CModuleCalleeTest, EmptyEntryHasNoFunction) {
  table_.onRun = nullptr;
  EXPECT_TRUE(calleeOf(*static_cast<IModule*>(handle_), "onRun").isEmpty());
}

TEST(CalleeTest, ParticipantInCxxIsNamedByItsType) {
  const IBootContext participant;
  EXPECT_EQ(symbolOf(calleeOf(participant, "onLoad")).name, "IBootContext");
}

TEST(CalleeTest, EmptyCalleeIsNamedNobody) {
  EXPECT_EQ(symbolOf(Callee()).name, "nobody");
}

}  // namespace

}  // namespace host
