// SPDX-License-Identifier: MIT
// Each allocation of each C function fails once: std::bad_alloc reaches the caller, and the registrations,
// the reference counts and the instance-name cache are as before the call.
#include <list>
#include <map>
#include <new>
#include <string>
#include <tuple>
#include <utility>

#include "binding/cfm_observer.h"
#include "binding/data_provider.h"
#include "binding/event.h"
#include "binding/globals.h"
#include "binding/loop.h"
#include "boot/master_observer.h"
#include "dbc/client_table.h"
#include "tests/support/recording_test.h"
#include "tests/support/watched_heap.h"

namespace {

// Too long for the small-string optimisation.
constexpr const char* kFirst = "Device.Interfaces.Ethernet.Port.first.";
constexpr const char* kSecond = "Device.Interfaces.Ethernet.Port.second.";

int observe(void* /*user*/, int /*id*/, const char* /*instance*/, int /*operation*/, const char* /*leaf*/) {
  return 0;
}

int receive(void* /*user*/, const char* /*event*/, const char* /*data*/, const char* /*source*/) {
  return 0;
}

void ready(void* /*user*/, short /*events*/, int /*value*/) {}

void compute(int /*id*/, const char* /*instance*/, const char* /*leaf*/, void* /*user*/, void* /*handle*/) {}

int visit(int /*db*/, char* /*name*/, void* /*userdata*/, c_pass_fn3 /*pass_fn3*/, c_pass_fn4 /*pass_fn4*/,
          void* /*arg*/) {
  return 0;
}

// Services that allocate nothing, except for the names of instances.
class FrugalIterator : public ICfmIterator {
 public:
  int current = 0;

  int next() override { return ++current < 2 ? 1 : 0; }
  std::string name() override { return current == 0 ? kFirst : kSecond; }
  int reserved4() override { return 0; }
  int reserved5() override { return 0; }
};

class FrugalCfm : public RecordingCfm {
 public:
  using RecordingCfm::RecordingCfm;

  int observers = 0;
  int loans = 0;

  int registObserver(int /*id*/, ICfmObserver* /*observer*/) override { return ++observers; }
  int unregistObserver(int /*id*/, ICfmObserver* /*observer*/) override { return --observers; }
  int registDataProvider(int /*id*/, IDyncDataProvider* /*provider*/) override { return 0; }
  ICfmIterator* instanceIterator(int /*id*/) override {
    loans++;
    iterator_.current = 0;
    return &iterator_;
  }
  int releaseIterator(ICfmIterator* /*iterator*/) override { return --loans; }

 private:
  FrugalIterator iterator_;
};

class FrugalEvent : public RecordingEvent {
 public:
  using RecordingEvent::RecordingEvent;

  int registObserver(std::string /*event*/, IEventObserver* /*observer*/) override { return 0; }
  int unregistObserver(std::string /*event*/, IEventObserver* /*observer*/) override { return 0; }
};

class FrugalLoop : public RecordingLoop {
 public:
  using RecordingLoop::RecordingLoop;

  int addFd(int /*fd*/, int /*events*/, ILoopData* /*handler*/) override { return 0; }
  int delFd(int /*fd*/) override { return 0; }
};

class FrugalContext : public RecordingContext {
 public:
  explicit FrugalContext(CallLog& calls)
      : RecordingContext(calls), frugal_cfm(calls), frugal_event(calls), frugal_loop(calls) {}

  FrugalCfm frugal_cfm;
  FrugalEvent frugal_event;
  FrugalLoop frugal_loop;

  ICfm* getCfm() override { return &frugal_cfm; }
  IEvent* getEvent() override { return &frugal_event; }
  ILoop* getLoop() override { return &frugal_loop; }
  int debugOut(const char* /*file*/, int /*line*/, const char* /*text*/) override { return 0; }
  int registMasterObserver(IBootContext* /*observer*/) override { return 0; }
};

using Names = std::map<std::string, void*>;
using Cache = std::map<int, Names>;
using Watches = std::map<int, std::tuple<__LoopData*, c_loop_callback, void*>>;

// The items of the cache. An empty entry or table has the same effect as none.
Cache cache() {
  Cache cache;
  for (const auto& [db, table] : *static_cast<std::map<int, DBClientTable*>*>(c_dbc_create())) {
    if (table == nullptr) continue;
    for (const auto& [name, item] : table->items) {
      if (item != nullptr) cache[db][name] = item->userdata;
    }
  }
  return cache;
}

// A null watch has the same effect as none.
Watches watches() {
  Watches watches;
  for (const auto& [fd, watch] : g_fd_watches) {
    if (watch != nullptr) watches[fd] = {watch, watch->callback, watch->user};
  }
  return watches;
}

using State = std::tuple<std::list<__CfmC*>, std::list<__EventC*>, std::list<__DataProvider*>, Watches,
                         std::map<std::string, int>, __MasterObserver*, Cache>;

State state() {
  return {g_cfm_observers,    g_event_observers, g_data_providers, watches(),
          g_reference_counts, g_master_observer, cache()};
}

class FailedAllocationTest : public RecordingTest {
 protected:
  FailedAllocationTest() : frugal(log) {
    releaseContext(nullptr);
    proxy.instance = &frugal;
    c_dbc_create();
  }

  ~FailedAllocationTest() override {
    watched_heap::news_before_failure = -1;
    g_reference_counts.clear();
  }

  // Repeats the call until it succeeds, each time with another failing allocation. Returns the number of
  // failed calls.
  template <typename Call>
  long failEachAllocation(Call call) {
    getContext();
    for (long n = 0;; n++) {
      const State before = state();
      if (!fails(n, call)) return n;
      EXPECT_EQ(state(), before) << n;
      EXPECT_EQ(frugal.frugal_cfm.observers, static_cast<int>(g_cfm_observers.size())) << n;
      EXPECT_EQ(frugal.frugal_cfm.loans, 0) << n;
    }
  }

  // The same for the allocations that a call makes until it has opened the library of the context.
  template <typename Call>
  long failEachAllocationUntilOpened(Call call) {
    for (long n = 0;; n++) {
      releaseContext(nullptr);
      const State before = state();
      if (!fails(n, call) || g_context_library != nullptr) return n;
      EXPECT_EQ(state(), before) << n;
    }
  }

  FrugalContext frugal;

 private:
  template <typename Call>
  static bool fails(long allocation, Call call) {
    watched_heap::news_before_failure = allocation;
    try {
      call();
    } catch (const std::bad_alloc&) {
      return true;
    }
    watched_heap::news_before_failure = -1;
    return false;
  }
};

TEST_F(FailedAllocationTest, WatchIsNotAdded) {
  EXPECT_EQ(failEachAllocation([] { c_loop_add_fd(7, 1, ready, nullptr); }), 2);
  EXPECT_EQ(watches().size(), 1U);
}

TEST_F(FailedAllocationTest, WatchAddedAgainNeedsNoMemory) {
  c_loop_add_fd(7, 1, nullptr, nullptr);
  EXPECT_EQ(failEachAllocation([] { c_loop_add_fd(7, 1, ready, nullptr); }), 0);
}

TEST_F(FailedAllocationTest, WatchIsDeletedWithoutMemory) {
  c_loop_add_fd(7, 1, ready, nullptr);
  EXPECT_EQ(failEachAllocation([] { c_loop_del_fd(7); }), 0);
}

TEST_F(FailedAllocationTest, EventObserverIsNotRegistered) {
  EXPECT_EQ(failEachAllocation([] { c_event_regist_observer(kFirst, receive, nullptr); }), 3);
  EXPECT_EQ(g_event_observers.size(), 1U);
}

TEST_F(FailedAllocationTest, EventObserverStaysRegistered) {
  c_event_regist_observer(kFirst, receive, nullptr);
  EXPECT_EQ(failEachAllocation([] { c_event_unregist_observer(kFirst, receive); }), 1);
  EXPECT_TRUE(g_event_observers.empty());
}

TEST_F(FailedAllocationTest, DataProviderIsNotRegistered) {
  EXPECT_EQ(failEachAllocation([] { c_cfm_data_provider_regist(5, compute, nullptr); }), 2);
  EXPECT_EQ(g_data_providers.size(), 1U);
}

TEST_F(FailedAllocationTest, ValueOfADataProviderStays) {
  __DataProvider provider;
  provider.result = "1";
  std::string text = kFirst;
  watched_heap::news_before_failure = 0;
  EXPECT_THROW(c_cfm_data_provider_set(&provider, "str", text.data()), std::bad_alloc);
  EXPECT_EQ(provider.result, "1");
}

TEST_F(FailedAllocationTest, ConfigurationObserverIsNotRegisteredAndNoInstanceIsCached) {
  EXPECT_GT(failEachAllocation([] { c_cfm_regist_observer(5, observe, nullptr); }), 6);
  EXPECT_EQ(g_cfm_observers.size(), 1U);
  EXPECT_EQ(cache(), Cache({{5, {{kFirst, nullptr}, {kSecond, nullptr}}}}));
}

TEST_F(FailedAllocationTest, UserDataOfAPreviousObserverStays) {
  int old = 0;
  c_dbc_add_userdata(5, kFirst, &old);
  c_dbc_add_userdata(5, "other", nullptr);
  EXPECT_GT(failEachAllocation([] { c_cfm_regist_observer(5, observe, nullptr); }), 6);
  EXPECT_EQ(cache(), Cache({{5, {{kFirst, nullptr}, {kSecond, nullptr}, {"other", nullptr}}}}));
}

TEST_F(FailedAllocationTest, ConfigurationObserverIsUnregisteredWithoutMemory) {
  c_cfm_regist_observer(5, observe, nullptr);
  EXPECT_EQ(failEachAllocation([] { c_cfm_unregist_observer(5, observe); }), 0);
  EXPECT_TRUE(g_cfm_observers.empty());
}

TEST_F(FailedAllocationTest, IteratorIsReleased) {
  const auto walk = [] { c_cfm_lookup_instance(5, visit, nullptr, nullptr, nullptr); };
  EXPECT_EQ(failEachAllocation(walk), 2);
}

TEST_F(FailedAllocationTest, ReferenceIsNotCounted) {
  EXPECT_EQ(failEachAllocation([] { reference_increase(kFirst); }), 2);
  EXPECT_EQ(failEachAllocation([] { reference_increase(kFirst); }), 1);
  EXPECT_EQ(g_reference_counts, (std::map<std::string, int>{{kFirst, 2}}));
}

TEST_F(FailedAllocationTest, ReferenceIsNotDropped) {
  g_reference_counts[kFirst] = 2;
  EXPECT_EQ(failEachAllocation([] { reference_decrease(kFirst); }), 1);
  EXPECT_EQ(g_reference_counts, (std::map<std::string, int>{{kFirst, 1}}));
}

TEST_F(FailedAllocationTest, ReferenceIsNotCountedIfTheContextCannotBeOpened) {
  g_reference_counts[kFirst] = 2;
  EXPECT_GT(failEachAllocationUntilOpened([] { reference_increase(kFirst); }), 1);
  EXPECT_GT(failEachAllocationUntilOpened([] { reference_decrease(kFirst); }), 1);
}

TEST_F(FailedAllocationTest, MasterObserverIsNotRegistered) {
  ModuleCallbacks table = {};
  EXPECT_EQ(failEachAllocation([&] { c_context_regist_master_observer(&table); }), 1);
  EXPECT_NE(g_master_observer, nullptr);
}

TEST_F(FailedAllocationTest, MasterObserverIsNotRegisteredIfTheContextCannotBeOpened) {
  ModuleCallbacks table = {};
  EXPECT_GT(failEachAllocationUntilOpened([&] { c_context_regist_master_observer(&table); }), 1);
}

TEST_F(FailedAllocationTest, ContextIsOpenedOnceThereIsMemory) {
  EXPECT_GT(failEachAllocationUntilOpened([] { getContext(); }), 1);
  EXPECT_EQ(getContext(), &frugal);
}

TEST_F(FailedAllocationTest, UserDataIsNotAdded) {
  int data = 0;
  EXPECT_GT(failEachAllocation([&] { c_dbc_add_userdata(5, kFirst, &data); }), 3);
  EXPECT_GT(failEachAllocation([&] { c_dbc_add_userdata(5, kSecond, &data); }), 2);
  EXPECT_EQ(cache(), Cache({{5, {{kFirst, &data}, {kSecond, &data}}}}));
}

TEST_F(FailedAllocationTest, UserDataIsNotReplaced) {
  int data = 0;
  c_dbc_add_userdata(5, kFirst, nullptr);
  EXPECT_EQ(failEachAllocation([&] { c_dbc_add_userdata(5, kFirst, &data); }), 1);
  EXPECT_EQ(cache(), Cache({{5, {{kFirst, &data}}}}));
}

TEST_F(FailedAllocationTest, NamesStayCached) {
  c_dbc_add_userdata(5, kFirst, nullptr);
  EXPECT_GT(failEachAllocation([] { c_dbc_get_userdata(5, kSecond); }), 0);
  EXPECT_GT(failEachAllocation([] { c_dbc_lookup(5, visit, nullptr, nullptr, nullptr); }), 0);
  EXPECT_GT(failEachAllocation([] { c_dbc_db_release(5, kFirst); }), 0);
  EXPECT_EQ(cache(), Cache());
}

TEST_F(FailedAllocationTest, ObjectIsReleasedWithoutMemory) {
  c_dbc_add_userdata(5, kFirst, nullptr);
  EXPECT_EQ(failEachAllocation([] { c_dbc_db_release_all(5); }), 0);
  EXPECT_EQ(cache(), Cache());
}

}  // namespace
