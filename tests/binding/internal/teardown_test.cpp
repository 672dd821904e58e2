// SPDX-License-Identifier: MIT
// What c_context_deinit() destroys, in which order, and what it keeps.
#include <new>
#include <string>
#include <utility>

#include "binding/cfm_observer.h"
#include "binding/data_provider.h"
#include "binding/event.h"
#include "binding/globals.h"
#include "binding/loop.h"
#include "binding/timer.h"
#include "boot/master_observer.h"
#include "tests/support/recording_test.h"
#include "tests/support/watched_heap.h"

namespace {

// The objects destroyed so far, each with the number of entries left in the containers before it.
Calls g_gone;

void note(const std::string& name) {
  const std::size_t left =
      g_cfm_observers.size() + g_event_observers.size() + g_fd_watches.size() + g_data_providers.size();
  g_gone.push_back(name + ", left " + std::to_string(left));
}

// An adapter that records when its destructor runs.
template <typename Adapter>
class Probe : public Adapter {
 public:
  template <typename... Arguments>
  explicit Probe(std::string name, Arguments... arguments) : Adapter(arguments...), name_(std::move(name)) {}
  ~Probe() override { note(name_); }

 private:
  std::string name_;
};

// Data providers have no virtual destructor, so the test watches their memory instead.
const void* g_provider = nullptr;

void noteProvider(void* block) {
  if (block == g_provider) note("provider");
}

int tick() {
  return 0;
}

class TeardownTest : public RecordingTest {
 protected:
  TeardownTest() { g_gone.clear(); }

  ~TeardownTest() override {
    watched_heap::on_delete = nullptr;
    g_provider = nullptr;
    g_reference_counts.clear();
    g_timer.callback = nullptr;
  }

  static __DataProvider* watchedProvider() {
    auto* provider = new __DataProvider;
    g_provider = provider;
    watched_heap::on_delete = noteProvider;
    return provider;
  }
};

TEST_F(TeardownTest, EverythingIsDestroyedInOrder) {
  g_cfm_observers = {new Probe<__CfmC>("cfm 1"), nullptr, new Probe<__CfmC>("cfm 2")};
  g_event_observers = {new Probe<__EventC>("event 1"), nullptr, new Probe<__EventC>("event 2")};
  g_fd_watches = {{9, new Probe<__LoopData>("fd 9")}, {5, nullptr}, {2, new Probe<__LoopData>("fd 2")}};
  g_data_providers = {nullptr, watchedProvider()};
  g_master_observer = new Probe<__MasterObserver>("master", nullptr);
  log.on_call = [](const std::string& call) { note(call); };

  c_context_deinit();
  EXPECT_EQ(g_gone,
            Calls({"cfm 1, left 11", "cfm 2, left 11", "event 1, left 8", "event 2, left 8", "fd 2, left 5",
                   "fd 9, left 5", "provider, left 2", "master, left 0", "relInstance(object), left 0"}));
}

TEST_F(TeardownTest, ContainersAreEmptyAfterwards) {
  g_cfm_observers = {new __CfmC};
  g_event_observers = {new __EventC};
  g_data_providers = {new __DataProvider};
  g_fd_watches = {{1, new __LoopData}};
  g_master_observer = new __MasterObserver(nullptr);

  c_context_deinit();
  EXPECT_TRUE(g_cfm_observers.empty());
  EXPECT_TRUE(g_event_observers.empty());
  EXPECT_TRUE(g_data_providers.empty());
  EXPECT_TRUE(g_fd_watches.empty());
  EXPECT_EQ(g_master_observer, nullptr);
  EXPECT_EQ(g_context_library, nullptr);
}

TEST_F(TeardownTest, NullElementsAreSkipped) {
  g_cfm_observers = {nullptr};
  g_event_observers = {nullptr};
  g_data_providers = {nullptr};
  g_fd_watches = {{1, nullptr}};

  c_context_deinit();
  EXPECT_TRUE(g_cfm_observers.empty());
  EXPECT_TRUE(g_event_observers.empty());
  EXPECT_TRUE(g_data_providers.empty());
  EXPECT_TRUE(g_fd_watches.empty());
}

TEST_F(TeardownTest, MasterObserverIsForgottenBeforeTheContextIsReleased) {
  __MasterObserver* during = nullptr;
  g_master_observer = during = new __MasterObserver(nullptr);
  log.on_call = [&during](const std::string&) { during = g_master_observer; };
  c_context_deinit();
  EXPECT_EQ(during, nullptr);
}

TEST_F(TeardownTest, DataProviderFreesItsAnswer) {
  auto* provider = new __DataProvider;
  provider->result = std::string(1000, 'r');
  g_data_providers = {provider};
  c_context_deinit();
  EXPECT_TRUE(g_data_providers.empty());
}

TEST_F(TeardownTest, TimerAndReferenceCountsRemain) {
  g_timer.callback = tick;
  g_reference_counts = {{"A.1.", 2}, {"A.2.", 0}};
  c_context_deinit();
  EXPECT_EQ(g_timer.callback, &tick);
  EXPECT_EQ(g_reference_counts, (std::map<std::string, int>{{"A.1.", 2}, {"A.2.", 0}}));
}

TEST_F(TeardownTest, FailedAllocationOfTheCacheReachesTheCaller) {
  watched_heap::news_before_failure = 0;
  EXPECT_THROW(c_dbc_create(), std::bad_alloc);
  EXPECT_NE(c_dbc_create(), nullptr);
}

}  // namespace
