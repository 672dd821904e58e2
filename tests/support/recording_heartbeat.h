// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_SUPPORT_RECORDING_HEARTBEAT_H
#define CPP2C_TESTS_SUPPORT_RECORDING_HEARTBEAT_H

#include "binding/context.h"
#include "tests/support/call_log.h"

// A watchdog that records its calls.
class RecordingHeartbeat : public IHeartbeat {
 public:
  explicit RecordingHeartbeat(CallLog& calls) : calls_(calls) {}

  int reserved3() override { return calls_.record("heartbeat.reserved3"); }
  int reserved4() override { return calls_.record("heartbeat.reserved4"); }
  int reserved5() override { return calls_.record("heartbeat.reserved5"); }
  int reserved6() override { return calls_.record("heartbeat.reserved6"); }
  int reserved7() override { return calls_.record("heartbeat.reserved7"); }
  int reserved8() override { return calls_.record("heartbeat.reserved8"); }
  int lock() override { return calls_.record("heartbeat.lock"); }
  int unlock() override { return calls_.record("heartbeat.unlock"); }

 private:
  CallLog& calls_;
};

#endif
