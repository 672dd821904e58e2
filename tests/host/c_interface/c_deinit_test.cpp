// SPDX-License-Identifier: MIT
// c_context_deinit() at the wrong time.
#include <gtest/gtest.h>

#include "tests/host/c_interface/c_interface_fixture.h"

using namespace host;

namespace {

int endInTimer() {
  c_context_deinit();
  return 0;
}

int endInEvent(void* /*user*/, const char* /*event*/, const char* /*data*/, const char* /*source*/) {
  c_context_deinit();
  return 0;
}

class CDeinitDeathTest : public CInterfaceFixture {
 protected:
  static void endInCallback() {
    init({});
    c_context_set_timer(0, 0, endInTimer);
    c_loop_run();
  }

  static void endInNestedCallback() {
    init({});
    c_event_regist_observer("up", endInEvent, nullptr);
    c_context_set_timer(0, 0, [] {
      c_event_notify("up", "");
      return 0;
    });
    c_loop_run();
  }

  static void endInStep() {
    init({});
    ModuleCallbacks master = {};
    master.onRun = endInTimer;
    c_context_regist_master_observer(&master);
    c_context_load();
  }
};

TEST_F(CDeinitDeathTest, InsideACallbackAbortsAndNamesIt) {
  EXPECT_EXIT(endInCallback(), testing::KilledBySignal(SIGABRT),
              "^c_context_deinit\\(\\) is called inside the callback .*endInTimer.* "
              "\\(c_deinit_test.cpp:[0-9]+\\) of timer after 0 ms; call it after c_loop_run\\(\\) has "
              "returned\n$");
}

TEST_F(CDeinitDeathTest, InsideANestedCallbackNamesTheInnermost) {
  EXPECT_EXIT(endInNestedCallback(), testing::KilledBySignal(SIGABRT),
              "^c_context_deinit\\(\\) is called inside the callback .*endInEvent.* of event up; ");
}

TEST_F(CDeinitDeathTest, InsideAStepAborts) {
  EXPECT_EXIT(endInStep(), testing::KilledBySignal(SIGABRT),
              "^c_context_deinit\\(\\) is called inside the callback .*endInTimer.* of module the master "
              "observer onRun; ");
}

}  // namespace
