// SPDX-License-Identifier: MIT
// The containers of the adapters.
#include <memory>

#include "binding/cfm_observer.h"
#include "binding/event.h"
#include "binding/globals.h"
#include "binding/loop.h"
#include "tests/support/recording_test.h"

namespace {

using RegistryTest = RecordingTest;

int observe(void* /*user*/, int /*id*/, const char* /*instance*/, int /*operation*/, const char* /*leaf*/) {
  return 0;
}

int receive(void* /*user*/, const char* /*event*/, const char* /*data*/, const char* /*source*/) {
  return 0;
}

void ready(void* /*user*/, short /*events*/, int /*value*/) {}

TEST_F(RegistryTest, WatchIsStoredUnderItsDescriptor) {
  int user = 0;
  c_loop_add_fd(7, 1, ready, &user);
  ASSERT_EQ(g_fd_watches.size(), 1U);
  const __LoopData* watch = g_fd_watches.at(7);
  EXPECT_EQ(watch, context.loop.handlers[0]);
  EXPECT_EQ(watch->callback, &ready);
  EXPECT_EQ(watch->user, &user);
  EXPECT_EQ(watch->fd, 7);
}

TEST_F(RegistryTest, WatchAddedAgainRemainsTheOnlyOne) {
  int user = 0;
  c_loop_add_fd(7, 1, ready, &user);
  c_loop_add_fd(7, 1, nullptr, nullptr);
  ASSERT_EQ(g_fd_watches.size(), 1U);
  EXPECT_EQ(g_fd_watches.at(7)->callback, nullptr);
  EXPECT_EQ(g_fd_watches.at(7)->user, nullptr);
}

TEST_F(RegistryTest, AddFillsANullWatch) {
  g_fd_watches[7] = nullptr;
  c_loop_add_fd(7, 1, ready, nullptr);
  ASSERT_NE(g_fd_watches.at(7), nullptr);
  EXPECT_EQ(g_fd_watches.at(7)->callback, &ready);
}

TEST_F(RegistryTest, DelRemovesANullWatch) {
  g_fd_watches[7] = nullptr;
  c_loop_del_fd(7);
  EXPECT_TRUE(g_fd_watches.empty());
}

TEST_F(RegistryTest, DelOfAnUnknownDescriptorDoesNotChangeTheMap) {
  c_loop_add_fd(7, 1, ready, nullptr);
  const auto before = g_fd_watches;
  c_loop_del_fd(8);
  EXPECT_EQ(g_fd_watches, before);
}

TEST_F(RegistryTest, DelRemovesItsDescriptor) {
  c_loop_add_fd(7, 1, ready, nullptr);
  c_loop_add_fd(8, 1, ready, nullptr);
  c_loop_del_fd(7);
  EXPECT_EQ(g_fd_watches.size(), 1U);
  EXPECT_EQ(g_fd_watches.count(8), 1U);
}

TEST_F(RegistryTest, AddWithoutALoopCreatesNoEntry) {
  context.missing.insert("getLoop");
  c_loop_add_fd(7, 1, ready, nullptr);
  EXPECT_TRUE(g_fd_watches.empty());
}

TEST_F(RegistryTest, AddWithoutAContextCreatesNoEntry) {
  releaseContext(nullptr);
  proxy.instance = nullptr;
  c_loop_add_fd(7, 1, ready, nullptr);
  EXPECT_TRUE(g_fd_watches.empty());
}

TEST_F(RegistryTest, EventObserversAreStoredInOrderOfRegistration) {
  int user = 0;
  c_event_regist_observer("link", receive, &user);
  c_event_regist_observer("route", nullptr, nullptr);
  ASSERT_EQ(g_event_observers.size(), 2U);
  EXPECT_EQ(g_event_observers.front(), context.event.registered[0].observer);
  EXPECT_EQ(g_event_observers.front()->callback, &receive);
  EXPECT_EQ(g_event_observers.front()->user, &user);
  EXPECT_EQ(g_event_observers.back(), context.event.registered[1].observer);
}

TEST_F(RegistryTest, EventObserverIsStoredAfterItsRegistrationWithTheService) {
  std::size_t listed = 1;
  log.on_call = [&listed](const std::string&) { listed = g_event_observers.size(); };
  c_event_regist_observer("link", receive, nullptr);
  EXPECT_EQ(listed, 0U);
}

TEST_F(RegistryTest, EventObserverIsRemovedAfterTheServiceIsCalled) {
  std::size_t listed = 0;
  c_event_regist_observer("link", receive, nullptr);
  log.on_call = [&listed](const std::string&) { listed = g_event_observers.size(); };
  c_event_unregist_observer("link", receive);
  EXPECT_EQ(listed, 1U);
  EXPECT_TRUE(g_event_observers.empty());
}

TEST_F(RegistryTest, AllEntriesOfAnEventObserverAreRemoved) {
  auto observer = std::make_unique<__EventC>();
  observer->callback = receive;
  g_event_observers = {observer.get(), observer.get()};
  c_event_unregist_observer("link", receive);
  EXPECT_TRUE(g_event_observers.empty());
  EXPECT_EQ(context.event.unregistered.size(), 1U);
}

TEST_F(RegistryTest, ConfigurationObserversAreStoredInOrderOfRegistration) {
  int user = 0;
  c_cfm_regist_observer(5, observe, &user);
  c_cfm_regist_observer(4, nullptr, nullptr);
  ASSERT_EQ(g_cfm_observers.size(), 2U);
  EXPECT_EQ(g_cfm_observers.front(), cfm.registered[0].observer);
  EXPECT_EQ(g_cfm_observers.front()->callback, &observe);
  EXPECT_EQ(g_cfm_observers.front()->user, &user);
  EXPECT_EQ(g_cfm_observers.front()->id, 5);
  EXPECT_EQ(g_cfm_observers.back(), cfm.registered[1].observer);
}

TEST_F(RegistryTest, AllEntriesOfAConfigurationObserverAreRemoved) {
  auto* observer = new __CfmC;
  observer->id = 5;
  observer->callback = observe;
  g_cfm_observers = {observer, observer};
  c_cfm_unregist_observer(5, observe);
  EXPECT_TRUE(g_cfm_observers.empty());
  EXPECT_EQ(cfm.unregistered.size(), 1U);
}

class CfmProbe : public __CfmC {
 public:
  explicit CfmProbe(std::size_t& listed) : listed_(listed) {
    id = 5;
    callback = observe;
  }
  ~CfmProbe() override { listed_ = g_cfm_observers.size(); }

 private:
  std::size_t& listed_;
};

TEST_F(RegistryTest, ConfigurationObserverIsDestroyedAfterItsRemovalFromTheList) {
  std::size_t listed = 7;
  g_cfm_observers = {new CfmProbe(listed)};
  c_cfm_unregist_observer(5, observe);
  EXPECT_EQ(listed, 0U);
}

class WatchProbe : public __LoopData {
 public:
  explicit WatchProbe(Calls& order) : order_(order) {}
  ~WatchProbe() override { order_.push_back("destroyed"); }

 private:
  Calls& order_;
};

TEST_F(RegistryTest, WatchIsDestroyedAfterTheLoopIsCalled) {
  Calls order;
  g_fd_watches[7] = new WatchProbe(order);
  log.on_call = [&order](const std::string& call) { order.push_back(call); };
  c_loop_del_fd(7);
  EXPECT_EQ(order, Calls({"context.getLoop()", "loop.delFd(7)", "destroyed"}));
}

TEST_F(RegistryTest, WatchIsDestroyedWithoutALoop) {
  Calls order;
  g_fd_watches[7] = new WatchProbe(order);
  context.missing.insert("getLoop");
  c_loop_del_fd(7);
  EXPECT_EQ(order, Calls({"destroyed"}));
}

}  // namespace
