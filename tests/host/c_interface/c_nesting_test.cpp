// SPDX-License-Identifier: MIT
// Callbacks that cause themselves, on a thread with a small stack.
#include <pthread.h>

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/c_interface/c_interface_fixture.h"

using namespace host;

namespace {

constexpr int kLimit = 64;  // documented
constexpr std::size_t kSmallStack = 1 << 20;

constexpr const char* kConfig = R"({
  "objects": [{"number": 4, "name": "A.", "leaves": {
    "X": {"type": "int"}, "Y": {"type": "int", "default": 7, "computed": true}}}]
})";

int g_calls = 0;
std::vector<int> g_results;

// The local variables of a callback.
struct Buffers {
  Buffers() { bytes[0] = 1; }
  volatile char bytes[4096];
};

int notifyAgain(void* /*user*/, const char* event, const char* data, const char* /*source*/) {
  g_calls++;
  const Buffers buffers;
  c_event_notify(event, data);
  return 0;
}

int alsoNotifyAgain(void* user, const char* event, const char* data, const char* source) {
  return notifyAgain(user, event, data, source);
}

int setAgain(void* /*user*/, int /*id*/, const char* /*instance*/, int /*operation*/, const char* /*leaf*/) {
  const int value = ++g_calls;
  const Buffers buffers;
  g_results.push_back(c_cfm_set_value("A.X", 0, "int", &value, sizeof value));
  return 0;
}

void readAgain(int /*id*/, const char* /*instance*/, const char* /*leaf*/, void* /*user*/, void* handle) {
  g_calls++;
  const Buffers buffers;
  int value = 0;
  EXPECT_EQ(c_cfm_get_value("A.Y", "int", &value, sizeof value), C_RESULT_OK);
  g_results.push_back(value);
  std::string text = std::to_string(value + 1);
  c_cfm_data_provider_set(handle, "str", text.data());
}

int dependAgain(const char* name) {
  g_calls++;
  const Buffers buffers;
  c_context_notify_depends(name);
  return 0;
}

void* runFunction(void* function) {
  (*static_cast<std::function<void()>*>(function))();
  return nullptr;
}

void onSmallStack(std::function<void()> function) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, kSmallStack);
  pthread_t thread{};
  ASSERT_EQ(pthread_create(&thread, &attributes, runFunction, &function), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

class CNestingTest : public CInterfaceFixture {
 protected:
  CNestingTest() {
    g_calls = 0;
    g_results.clear();
    EXPECT_EQ(initWith(kConfig), C_RESULT_OK);
  }

  // Each record names the function and the cause of its calls. The log writes a repeated one when it is
  // closed.
  void expectReported(const std::vector<std::string>& functions, const std::string& of) const {
    c_context_deinit();
    const std::vector<std::string> all = records();
    ASSERT_EQ(all.size(), functions.size()) << folder_.read("log");
    for (std::size_t i = 0; i < all.size(); i++) {
      const std::string start = "error callback: the callback (anonymous namespace)::" + functions[i] + "(";
      const std::string end = " of " + of +
                              " is not called, nor any other until the outermost callback returns: 64 calls "
                              "are nested, probably an endless recursion";
      EXPECT_EQ(all[i].rfind(start, 0), 0U) << all[i];
      EXPECT_NE(all[i].find("c_nesting_test.cpp:"), std::string::npos) << all[i];
      EXPECT_EQ(all[i].substr(all[i].size() - std::min(all[i].size(), end.size())), end);
    }
  }
};

TEST_F(CNestingTest, EventObserverThatSendsItsOwnEventIsStopped) {
  c_event_regist_observer("up", notifyAgain, nullptr);
  onSmallStack([] { c_event_notify("up", "eth0"); });
  EXPECT_EQ(g_calls, kLimit);
  expectReported({"notifyAgain"}, "event up");
}

TEST_F(CNestingTest, LaterCallsAreMadeAgain) {
  c_event_regist_observer("up", notifyAgain, nullptr);
  c_event_notify("up", "1");
  c_event_notify("up", "2");
  EXPECT_EQ(g_calls, 2 * kLimit);
  expectReported({"notifyAgain", "notifyAgain"}, "event up");
}

// Every level would call two observers: without more than the limit of levels, they would never end.
TEST_F(CNestingTest, TwoObserversThatSendTheirOwnEventEnd) {
  c_event_regist_observer("up", notifyAgain, nullptr);
  c_event_regist_observer("up", alsoNotifyAgain, nullptr);
  c_event_notify("up", "eth0");
  EXPECT_EQ(g_calls, 2 * kLimit);
  expectReported({"notifyAgain", "notifyAgain"}, "event up");
}

TEST_F(CNestingTest, ChangeObserverThatSetsItsOwnLeafGetsAnError) {
  c_cfm_regist_observer(4, setAgain, nullptr);
  onSmallStack([] {
    const int value = -1;
    EXPECT_EQ(c_cfm_set_value("A.X", 0, "int", &value, sizeof value), C_RESULT_OK);
  });
  EXPECT_EQ(g_calls, kLimit);
  ASSERT_EQ(g_results.size(), static_cast<std::size_t>(kLimit));
  EXPECT_EQ(g_results.front(), C_RESULT_SYSTEM_CALL);  // of the innermost call
  EXPECT_EQ(g_results.back(), C_RESULT_OK);
  expectReported({"setAgain"}, "change A.");
}

TEST_F(CNestingTest, ValueIsStoredAlthoughItsObserverIsNotCalled) {
  c_cfm_regist_observer(4, setAgain, nullptr);
  const int value = -1;
  c_cfm_set_value("A.X", 0, "int", &value, sizeof value);
  int stored = 0;
  EXPECT_EQ(c_cfm_get_value("A.X", "int", &stored, sizeof stored), C_RESULT_OK);
  EXPECT_EQ(stored, kLimit);
}

TEST_F(CNestingTest, ProviderThatReadsItsOwnLeafReadsTheDefault) {
  c_cfm_data_provider_regist(4, readAgain, nullptr);
  int value = 0;
  onSmallStack([&] { EXPECT_EQ(c_cfm_get_value("A.Y", "int", &value, sizeof value), C_RESULT_OK); });
  EXPECT_EQ(g_calls, kLimit);
  EXPECT_EQ(g_results.front(), 7);
  EXPECT_EQ(value, 7 + kLimit);
  expectReported({"readAgain"}, "provider A.");
}

TEST_F(CNestingTest, DependenceThatIsAnnouncedAgainEnds) {
  ModuleCallbacks master = {};
  master.recvDependence = dependAgain;
  c_context_regist_master_observer(&master);
  EXPECT_EQ(c_context_load(), C_RESULT_OK);
  onSmallStack([] { c_context_notify_depends("dns"); });
  EXPECT_EQ(g_calls, kLimit);
  expectReported({"dependAgain"}, "module the master observer recvDependence");
}

}  // namespace
