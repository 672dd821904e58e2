// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_SUPPORT_RECORDING_LOG_H
#define CPP2C_TESTS_SUPPORT_RECORDING_LOG_H

#include <string>

#include "binding/context.h"
#include "tests/support/call_log.h"

// A log service that records its calls.
class RecordingLog : public ILog {
 public:
  explicit RecordingLog(CallLog& calls) : calls_(calls) {}

  int record(std::string module, int level, const char* text) override {
    return calls_.record("log.record", module, level, text);
  }

 private:
  CallLog& calls_;
};

#endif
