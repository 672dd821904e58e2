// SPDX-License-Identifier: MIT
// The fields of all classes whose layout is part of the binary interface: their order and number.
#include <cstddef>
#include <type_traits>

#include <gtest/gtest.h>

#include "binding/cfm_observer.h"
#include "binding/data_provider.h"
#include "binding/event.h"
#include "binding/globals.h"
#include "binding/loop.h"
#include "binding/timer.h"
#include "boot/c_module.h"
#include "boot/master_observer.h"
#include "boot/product_config.h"
#include "dbc/client_table.h"

namespace {

static_assert(offsetof(ModuleCallbacks, onLoad) == 0 * sizeof(void*));
static_assert(offsetof(ModuleCallbacks, onStart) == 1 * sizeof(void*));
static_assert(offsetof(ModuleCallbacks, onConfig) == 2 * sizeof(void*));
static_assert(offsetof(ModuleCallbacks, onRun) == 3 * sizeof(void*));
static_assert(offsetof(ModuleCallbacks, onUnconfig) == 4 * sizeof(void*));
static_assert(offsetof(ModuleCallbacks, onUnload) == 5 * sizeof(void*));
static_assert(offsetof(ModuleCallbacks, recvDependence) == 6 * sizeof(void*));
static_assert(sizeof(ModuleCallbacks) == 7 * sizeof(void*));

static_assert(std::is_same_v<decltype(g_cfm_observers), std::list<__CfmC*>>);
static_assert(std::is_same_v<decltype(g_event_observers), std::list<__EventC*>>);
static_assert(std::is_same_v<decltype(g_data_providers), std::list<__DataProvider*>>);
static_assert(std::is_same_v<decltype(g_fd_watches), std::map<int, __LoopData*>>);
static_assert(std::is_same_v<decltype(g_reference_counts), std::map<std::string, int>>);
static_assert(std::is_same_v<decltype(DBClientTable::items), std::map<std::string, DBClientItem*>>);
static_assert(std::is_same_v<decltype(__Module::table), ModuleCallbacks*>);

constexpr std::size_t kWord = sizeof(void*);  // an int followed by a pointer also occupies one

template <typename Object, typename Field>
std::size_t offsetIn(const Object& object, const Field& field) {
  return static_cast<std::size_t>(reinterpret_cast<const char*>(&field) -
                                  reinterpret_cast<const char*>(&object));
}

std::size_t roundedUp(std::size_t size) {
  return (size + kWord - 1) / kWord * kWord;
}

TEST(LayoutTest, LoopDataHasCallbackUserFd) {
  const __LoopData watch;
  EXPECT_EQ(offsetIn(watch, watch.callback), 1 * kWord);
  EXPECT_EQ(offsetIn(watch, watch.user), 2 * kWord);
  EXPECT_EQ(offsetIn(watch, watch.fd), 3 * kWord);
  EXPECT_EQ(sizeof watch, 4 * kWord);
}

TEST(LayoutTest, TimerAdapterHasCallback) {
  const __NtpTimerCB timer;
  EXPECT_EQ(offsetIn(timer, timer.callback), 1 * kWord);
  EXPECT_EQ(sizeof timer, 2 * kWord);
}

TEST(LayoutTest, EventObserverHasUserCallback) {
  const __EventC observer;
  EXPECT_EQ(offsetIn(observer, observer.user), 1 * kWord);
  EXPECT_EQ(offsetIn(observer, observer.callback), 2 * kWord);
  EXPECT_EQ(sizeof observer, 3 * kWord);
}

TEST(LayoutTest, ConfigurationObserverHasIdUserCallback) {
  const __CfmC observer;
  EXPECT_EQ(offsetIn(observer, observer.id), 1 * kWord);
  EXPECT_EQ(offsetIn(observer, observer.user), 2 * kWord);
  EXPECT_EQ(offsetIn(observer, observer.callback), 3 * kWord);
  EXPECT_EQ(sizeof observer, 4 * kWord);
}

TEST(LayoutTest, DataProviderHasCallbackUserResult) {
  const __DataProvider provider;
  EXPECT_EQ(offsetIn(provider, provider.callback), 1 * kWord);
  EXPECT_EQ(offsetIn(provider, provider.user), 2 * kWord);
  EXPECT_EQ(offsetIn(provider, provider.result), 3 * kWord);
  EXPECT_EQ(sizeof provider, 3 * kWord + sizeof(std::string));
}

TEST(LayoutTest, ModuleHasReservedTable) {
  const __Module module(nullptr);
  EXPECT_EQ(offsetIn(module, module.reserved), 1 * kWord);
  EXPECT_EQ(offsetIn(module, module.table), 2 * kWord);
  EXPECT_EQ(sizeof module, 3 * kWord);
}

TEST(LayoutTest, MasterObserverHasTable) {
  const __MasterObserver observer(nullptr);
  EXPECT_EQ(offsetIn(observer, observer.table), 1 * kWord);
  EXPECT_EQ(sizeof observer, 2 * kWord);
}

TEST(LayoutTest, BootContextAndModuleHaveNoFields) {
  EXPECT_EQ(sizeof(IBootContext), kWord);
  EXPECT_EQ(sizeof(IModule), kWord);
}

class Product : public IProductConfig {
 public:
  Product() : IProductConfig(nullptr) {}

  std::string productName() override { return {}; }
  void listLibraries() override {}
  std::string productVersion() override { return {}; }

  std::size_t librariesOffset() const { return offsetIn(*this, libraries); }
  std::size_t contextOffset() const { return offsetIn(*this, context); }
  std::size_t modulesOffset() const { return offsetIn(*this, modules); }
};

TEST(LayoutTest, ProductHasLibrariesContextModules) {
  const Product product;
  const std::size_t list = roundedUp(sizeof(std::list<std::string>));
  EXPECT_EQ(product.librariesOffset(), kWord);
  EXPECT_EQ(product.contextOffset(), kWord + list);
  EXPECT_EQ(product.modulesOffset(), 2 * kWord + list);
  EXPECT_EQ(sizeof product, 2 * kWord + list + sizeof(std::map<IModule*, DllMgr*>));
}

}  // namespace
