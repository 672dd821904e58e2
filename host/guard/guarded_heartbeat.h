// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_GUARD_GUARDED_HEARTBEAT_H
#define CPP2C_HOST_GUARD_GUARDED_HEARTBEAT_H

#include "binding/context.h"
#include "host/guard/guard.h"

class GuardedHeartbeat final : public IHeartbeat {
 public:
  GuardedHeartbeat(Guard& guard, IHeartbeat& heartbeat) : guard_(guard), heartbeat_(heartbeat) {}

  int lock() override {
    return guard_.enter(Operation::kLock, [&] { return heartbeat_.lock(); });
  }

  int unlock() override {
    return guard_.enter(Operation::kUnlock, [&] { return heartbeat_.unlock(); });
  }

  int reserved3() override { return heartbeat_.reserved3(); }
  int reserved4() override { return heartbeat_.reserved4(); }
  int reserved5() override { return heartbeat_.reserved5(); }
  int reserved6() override { return heartbeat_.reserved6(); }
  int reserved7() override { return heartbeat_.reserved7(); }
  int reserved8() override { return heartbeat_.reserved8(); }

 private:
  Guard& guard_;
  IHeartbeat& heartbeat_;
};

#endif
