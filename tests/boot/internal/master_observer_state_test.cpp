// SPDX-License-Identifier: MIT
#include "boot/master_observer.h"

#include "binding/globals.h"
#include "tests/support/recording_test.h"

namespace {

using MasterObserverStateTest = RecordingTest;

TEST_F(MasterObserverStateTest, RegistrationStoresAnObserverOfTheTable) {
  ModuleCallbacks table = {};
  EXPECT_EQ(g_master_observer, nullptr);
  c_context_regist_master_observer(&table);
  ASSERT_NE(g_master_observer, nullptr);
  EXPECT_EQ(g_master_observer->table, &table);
  EXPECT_EQ(context.master_observers.at(0), g_master_observer);
}

TEST_F(MasterObserverStateTest, RegistrationWithoutAContextStoresTheObserver) {
  ModuleCallbacks table = {};
  releaseContext(nullptr);
  proxy.instance = nullptr;
  c_context_regist_master_observer(&table);
  ASSERT_NE(g_master_observer, nullptr);
  EXPECT_EQ(g_master_observer->table, &table);
}

TEST_F(MasterObserverStateTest, SecondRegistrationStoresNothing) {
  ModuleCallbacks first = {};
  ModuleCallbacks second = {};
  c_context_regist_master_observer(&first);
  const __MasterObserver* observer = g_master_observer;
  c_context_regist_master_observer(&second);
  EXPECT_EQ(g_master_observer, observer);
  EXPECT_EQ(g_master_observer->table, &first);
}

class ProbeObserver : public __MasterObserver {
 public:
  explicit ProbeObserver(bool& destroyed) : __MasterObserver(nullptr), destroyed_(destroyed) {}
  ~ProbeObserver() override { destroyed_ = true; }

 private:
  bool& destroyed_;
};

TEST_F(MasterObserverStateTest, TeardownCallsTheDestructorOfTheObserver) {
  bool destroyed = false;
  g_master_observer = new ProbeObserver(destroyed);
  c_context_deinit();
  EXPECT_TRUE(destroyed);
  EXPECT_EQ(g_master_observer, nullptr);
}

TEST_F(MasterObserverStateTest, TeardownDestroysTheObserverBeforeItReleasesTheContext) {
  bool destroyed = false;
  bool destroyed_before = false;
  g_master_observer = new ProbeObserver(destroyed);
  log.on_call = [&](const std::string& call) {
    if (call == "relInstance(object)") destroyed_before = destroyed;
  };
  c_context_deinit();
  EXPECT_TRUE(destroyed_before);
}

}  // namespace
