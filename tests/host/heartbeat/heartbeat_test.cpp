// SPDX-License-Identifier: MIT
#include "host/heartbeat/heartbeat.h"

#include <chrono>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "include_c"
#include "tests/host/support/recording_log.h"

namespace host {
namespace {

using std::chrono::milliseconds;
using Records = std::vector<std::string>;

Heartbeat::TimePoint g_now;

void pass(int ms) {
  g_now += milliseconds(ms);
}

class HeartbeatTest : public testing::Test {
 protected:
  void measure(void (*call)(Heartbeat&)) {
    const Heartbeat::Reading before = heartbeat_.read();
    call(heartbeat_);
    heartbeat_.check(before, heartbeat_.read(), [] { return "read_line of fd 7"; });
  }

  RecordingLog log_;
  Heartbeat heartbeat_{log_, milliseconds(100), [] { return g_now; }};
};

TEST_F(HeartbeatTest, CallbackBeyondTheLimitIsReported) {
  measure([](Heartbeat&) { pass(101); });
  EXPECT_EQ(log_.records, Records{"4 heartbeat: the callback read_line of fd 7 held the loop for 101 ms"});
}

TEST_F(HeartbeatTest, CallbackAtTheLimitIsNotReported) {
  measure([](Heartbeat&) { pass(100); });
  EXPECT_EQ(log_.records, Records{});
}

TEST_F(HeartbeatTest, LockedTimeDoesNotCount) {
  measure([](Heartbeat& heartbeat) {
    pass(60);
    EXPECT_EQ(heartbeat.lock(), C_RESULT_OK);
    pass(1000);
    EXPECT_EQ(heartbeat.unlock(), C_RESULT_OK);
    pass(40);
  });
  EXPECT_EQ(log_.records, Records{});
}

TEST_F(HeartbeatTest, TimeBesideTheLockCounts) {
  measure([](Heartbeat& heartbeat) {
    pass(60);
    heartbeat.lock();
    pass(1000);
    heartbeat.unlock();
    pass(60);
  });
  EXPECT_EQ(log_.records, Records{"4 heartbeat: the callback read_line of fd 7 held the loop for 120 ms"});
}

TEST_F(HeartbeatTest, LocksNest) {
  measure([](Heartbeat& heartbeat) {
    heartbeat.lock();
    heartbeat.lock();
    pass(1000);
    heartbeat.unlock();
    pass(1000);
    heartbeat.unlock();
  });
  EXPECT_EQ(log_.records, Records{});
}

TEST_F(HeartbeatTest, LockOutlastsTheCallback) {
  measure([](Heartbeat& heartbeat) { heartbeat.lock(); });
  measure([](Heartbeat&) { pass(1000); });
  EXPECT_EQ(heartbeat_.unlock(), C_RESULT_OK);
  EXPECT_EQ(log_.records, Records{});
  measure([](Heartbeat&) { pass(200); });
  EXPECT_EQ(log_.records.size(), 1U);
}

TEST_F(HeartbeatTest, LockFromBeforeEndsInside) {
  heartbeat_.lock();
  pass(1000);
  measure([](Heartbeat& heartbeat) {
    pass(1000);
    heartbeat.unlock();
    pass(101);
  });
  EXPECT_EQ(log_.records, Records{"4 heartbeat: the callback read_line of fd 7 held the loop for 101 ms"});
}

TEST_F(HeartbeatTest, PositionsThatNobodyCallsAnswerZero) {
  IHeartbeat& heartbeat = heartbeat_;
  for (auto reserved : {&IHeartbeat::reserved3, &IHeartbeat::reserved4, &IHeartbeat::reserved5,
                        &IHeartbeat::reserved6, &IHeartbeat::reserved7, &IHeartbeat::reserved8}) {
    EXPECT_EQ((heartbeat.*reserved)(), 0);
  }
}

TEST_F(HeartbeatTest, UnlockWithoutLockIsRefused) {
  EXPECT_EQ(heartbeat_.unlock(), C_RESULT_PARAM);
  heartbeat_.lock();
  heartbeat_.unlock();
  EXPECT_EQ(heartbeat_.unlock(), C_RESULT_PARAM);
}

}  // namespace

}  // namespace host
