// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_SUPPORT_RECORDING_LOOP_H
#define CPP2C_TESTS_SUPPORT_RECORDING_LOOP_H

#include <vector>

#include "binding/context.h"
#include "binding/handlers.h"
#include "tests/support/call_log.h"

// An event loop that records its calls. It watches nothing; a test calls the handlers itself.
class RecordingLoop : public ILoop {
 public:
  explicit RecordingLoop(CallLog& calls) : calls_(calls) {}

  std::vector<ILoopData*> handlers;  // arguments of addFd(), in order

  int addFd(int fd, int events, ILoopData* handler) override {
    handlers.push_back(handler);
    return calls_.record("loop.addFd", fd, events, handler);
  }

  int delFd(int fd) override { return calls_.record("loop.delFd", fd); }
  int reserved5() override { return calls_.record("loop.reserved5"); }
  int run() override { return calls_.record("loop.run"); }

 private:
  CallLog& calls_;
};

#endif
