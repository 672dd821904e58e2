// SPDX-License-Identifier: MIT
// Closes the library without c_context_deinit(): the adapters are not deleted.
#include <set>

#include <gtest/gtest.h>

#include "tests/abi/runtime_library.h"
#include "tests/support/context_proxy.h"
#include "tests/support/watched_heap.h"

namespace {

// The adapters that the context received. A deleted adapter is removed, because its memory may be reused.
std::set<const void*> g_adapters;

void forgetAdapter(void* block) {
  if (g_adapters.count(block) != 0) g_adapters.erase(block);
}

int observe(void* /*user*/, int /*id*/, const char* /*instance*/, int /*operation*/, const char* /*leaf*/) {
  return 0;
}

int receive(void* /*user*/, const char* /*event*/, const char* /*data*/, const char* /*source*/) {
  return 0;
}

void ready(void* /*user*/, short /*events*/, int /*value*/) {}

class AbandonedTest : public testing::Test {
 protected:
  ~AbandonedTest() override { watched_heap::on_delete = nullptr; }

  void regist(const RuntimeLibrary& library) {
    library.context_init(0, 0);
    library.cfm_regist_observer(5, observe, nullptr);
    library.event_regist_observer("link", receive, nullptr);
    library.loop_add_fd(7, 1, ready, nullptr);
    g_adapters = {proxy.context.cfm.registered.at(0).observer, proxy.context.event.registered.at(0).observer,
                  proxy.context.loop.handlers.at(0)};
    watched_heap::on_delete = forgetAdapter;
  }

  ContextProxy& proxy = renewContextProxy();
};

TEST_F(AbandonedTest, AdaptersAreNotDeleted) {
  RuntimeLibrary library;
  ASSERT_TRUE(library);
  regist(library);
  library.close();
  EXPECT_FALSE(RuntimeLibrary::isMapped());
  EXPECT_EQ(g_adapters.size(), 3U);
}

TEST_F(AbandonedTest, TeardownDeletesTheAdapters) {
  RuntimeLibrary library;
  ASSERT_TRUE(library);
  regist(library);
  library.context_deinit();
  EXPECT_TRUE(g_adapters.empty());
}

TEST_F(AbandonedTest, ContextIsNotReleased) {
  RuntimeLibrary library;
  ASSERT_TRUE(library);
  regist(library);
  library.close();
  EXPECT_TRUE(proxy.released.empty());
}

TEST_F(AbandonedTest, LibraryOpenedAgainHasNoObservers) {
  RuntimeLibrary library;
  ASSERT_TRUE(library);
  regist(library);
  library.close();

  RuntimeLibrary again;
  ASSERT_TRUE(again);
  EXPECT_EQ(again.cfm_get_regist_observer_callback(5), nullptr);
  again.context_deinit();
}

TEST_F(AbandonedTest, LibraryOpenedAgainObtainsTheContextAgain) {
  RuntimeLibrary library;
  ASSERT_TRUE(library);
  regist(library);
  library.close();
  proxy.calls.take();

  RuntimeLibrary again;
  ASSERT_TRUE(again);
  again.cfm_get_regist_observer_callback(5);
  EXPECT_EQ(proxy.calls.take(), Calls({"getInstance(null)", "context.getCfm()"}));
  again.context_deinit();
}

TEST_F(AbandonedTest, LibraryOpenedAgainHasAnEmptyCache) {
  int place = 0;
  RuntimeLibrary library;
  ASSERT_TRUE(library);
  regist(library);
  library.dbc_add_userdata(5, "x", &place);
  library.close();

  RuntimeLibrary again;
  ASSERT_TRUE(again);
  again.dbc_create();
  EXPECT_EQ(again.dbc_get_userdata(5, "x"), nullptr);
  again.context_deinit();
}

}  // namespace
