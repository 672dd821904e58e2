// SPDX-License-Identifier: MIT
// The C functions behind the library's adapters, named by the report of a slow callback.
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "tests/host/c_interface/c_interface_fixture.h"

using namespace host;

namespace {

constexpr const char* kConfig = R"({
  "heartbeat": {"limitMs": 1},
  "objects": [{"number": 4, "name": "A.", "leaves": {"X": {"type": "int"}, "Y": {"type": "int", "computed": true}}}]
})";

void dawdle() {
  std::this_thread::sleep_for(std::chrono::milliseconds(3));
}

int slowTimer() {
  dawdle();
  return raise(SIGTERM);
}

void slowReader(void* /*user*/, short /*events*/, int /*fd*/) {
  dawdle();
  raise(SIGTERM);
}

int slowEvent(void* /*user*/, const char* /*event*/, const char* /*data*/, const char* /*source*/) {
  dawdle();
  return 0;
}

int slowChange(void* /*user*/, int /*id*/, const char* /*instance*/, int /*operation*/,
               const char* /*leaf*/) {
  dawdle();
  return 0;
}

void slowProvider(int /*id*/, const char* /*instance*/, const char* /*leaf*/, void* /*user*/, void* handle) {
  dawdle();
  char text[] = "7";
  c_cfm_data_provider_set(handle, "str", text);
}

class CRegistrationsTest : public CInterfaceFixture {
 protected:
  CRegistrationsTest() { initWith(kConfig); }

  void expectReported(const std::string& function, const std::string& of) const {
    const std::string start = "warning heartbeat: the callback (anonymous namespace)::" + function;
    const std::string place = " (c_registrations_test.cpp:";
    const std::string end = " of " + of + " held the loop for ";
    for (const std::string& record : records()) {
      const bool found = record.rfind(start, 0) == 0 && record.find(place) != std::string::npos &&
                         record.find(end) != std::string::npos;
      if (found) return;
    }
    ADD_FAILURE() << function << " is not reported as " << of << ":\n" << folder_.read("log");
  }
};

TEST_F(CRegistrationsTest, TimerIsKnownByItsFunction) {
  c_context_set_timer(0, 50, slowTimer);
  c_loop_run();
  expectReported("slowTimer()", "timer after 0 ms, every 50 ms");
}

TEST_F(CRegistrationsTest, WatchIsKnownByItsFunction) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  close(ends[1]);
  c_loop_add_fd(ends[0], C_LOOP_READ, slowReader, nullptr);
  c_loop_run();
  expectReported("slowReader(void*, short, int)", "fd " + std::to_string(ends[0]));
  c_loop_del_fd(ends[0]);
  close(ends[0]);
}

TEST_F(CRegistrationsTest, EventObserverIsKnownByItsFunction) {
  c_event_regist_observer("link-up", slowEvent, nullptr);
  c_event_notify("link-up", "eth0");
  expectReported("slowEvent(void*, char const*, char const*, char const*)", "event link-up");
}

TEST_F(CRegistrationsTest, ConfigurationObserverIsKnownByItsFunction) {
  c_cfm_regist_observer(4, slowChange, nullptr);
  const int value = 3;
  EXPECT_EQ(c_cfm_set_value("A.X", 0, "int", &value, sizeof value), C_RESULT_OK);
  expectReported("slowChange(void*, int, char const*, int, char const*)", "change A.");
}

TEST_F(CRegistrationsTest, ProviderIsKnownByItsFunction) {
  c_cfm_data_provider_regist(4, slowProvider, nullptr);
  int value = 0;
  EXPECT_EQ(c_cfm_get_value("A.Y", "int", &value, sizeof value), C_RESULT_OK);
  EXPECT_EQ(value, 7);
  expectReported("slowProvider(int, char const*, char const*, void*, void*)", "provider A.");
}

}  // namespace
