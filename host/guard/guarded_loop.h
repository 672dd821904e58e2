// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_GUARD_GUARDED_LOOP_H
#define CPP2C_HOST_GUARD_GUARDED_LOOP_H

#include "binding/context.h"
#include "host/guard/guard.h"

class GuardedLoop final : public ILoop {
 public:
  GuardedLoop(Guard& guard, ILoop& loop) : guard_(guard), loop_(loop) {}

  int addFd(int fd, int events, ILoopData* handler) override {
    return guard_.enter(Operation::kAddFd, [&] { return loop_.addFd(fd, events, handler); });
  }

  int delFd(int fd) override {
    return guard_.enter(Operation::kDelFd, [&] { return loop_.delFd(fd); });
  }

  int run() override {
    return guard_.enter(Operation::kRun, [&] { return loop_.run(); });
  }

  int reserved5() override { return loop_.reserved5(); }

 private:
  Guard& guard_;
  ILoop& loop_;
};

#endif
