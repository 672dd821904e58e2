// SPDX-License-Identifier: MIT
// The fields of a new adapter.
#include <gtest/gtest.h>

#include "binding/cfm_observer.h"
#include "binding/data_provider.h"
#include "binding/event.h"
#include "binding/loop.h"
#include "binding/timer.h"
#include "boot/c_module.h"
#include "boot/master_observer.h"

namespace {

TEST(NewAdapterTest, WatchHasNoCallbackUserOrDescriptor) {
  const __LoopData watch;
  EXPECT_EQ(watch.callback, nullptr);
  EXPECT_EQ(watch.user, nullptr);
  EXPECT_EQ(watch.fd, -1);
}

TEST(NewAdapterTest, TimerHasNoCallback) {
  const __NtpTimerCB timer;
  EXPECT_EQ(timer.callback, nullptr);
}

TEST(NewAdapterTest, EventObserverHasNoCallbackOrUser) {
  const __EventC observer;
  EXPECT_EQ(observer.user, nullptr);
  EXPECT_EQ(observer.callback, nullptr);
}

TEST(NewAdapterTest, ConfigurationObserverHasNoCallbackOrUser) {
  const __CfmC observer;
  EXPECT_EQ(observer.user, nullptr);
  EXPECT_EQ(observer.callback, nullptr);
}

TEST(NewAdapterTest, DataProviderHasAnEmptyAnswer) {
  const __DataProvider provider;
  EXPECT_EQ(provider.result, "");
}

TEST(NewAdapterTest, ModuleHasANullPointerAndItsTable) {
  ModuleCallbacks table = {};
  const __Module module(&table);
  EXPECT_EQ(module.reserved, nullptr);
  EXPECT_EQ(module.table, &table);
}

TEST(NewAdapterTest, MasterObserverHasItsTable) {
  ModuleCallbacks table = {};
  const __MasterObserver observer(&table);
  EXPECT_EQ(observer.table, &table);
}

}  // namespace
