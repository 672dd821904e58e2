// SPDX-License-Identifier: MIT
// What an adapter holds before anything is registered with it.
#include <gtest/gtest.h>

#include "binding/cfm_observer.h"
#include "binding/data_provider.h"
#include "binding/event.h"
#include "binding/loop.h"
#include "binding/timer.h"
#include "boot/c_module.h"
#include "boot/master_observer.h"

namespace {

TEST(NewAdapterTest, WatchHasNoCallbackNoUserAndNoDescriptor) {
  const __LoopData watch;
  EXPECT_EQ(watch.callback, nullptr);
  EXPECT_EQ(watch.user, nullptr);
  EXPECT_EQ(watch.fd, -1);
}

TEST(NewAdapterTest, TimerHasNoCallback) {
  const __NtpTimerCB timer;
  EXPECT_EQ(timer.callback, nullptr);
}

TEST(NewAdapterTest, EventObserverHasNoCallbackAndNoUser) {
  const __EventC observer;
  EXPECT_EQ(observer.user, nullptr);
  EXPECT_EQ(observer.callback, nullptr);
}

TEST(NewAdapterTest, ConfigurationObserverHasNoCallbackAndNoUser) {
  const __CfmC observer;
  EXPECT_EQ(observer.user, nullptr);
  EXPECT_EQ(observer.callback, nullptr);
}

TEST(NewAdapterTest, DataProviderHasAnEmptyAnswer) {
  const __DataProvider provider;
  EXPECT_EQ(provider.result, "");
}

TEST(NewAdapterTest, ModuleHoldsItsTableBehindANullPointer) {
  ModuleCallbacks table = {};
  const __Module module(&table);
  EXPECT_EQ(module.reserved, nullptr);
  EXPECT_EQ(module.table, &table);
}

TEST(NewAdapterTest, MasterObserverHoldsItsTable) {
  ModuleCallbacks table = {};
  const __MasterObserver observer(&table);
  EXPECT_EQ(observer.table, &table);
}

}  // namespace
