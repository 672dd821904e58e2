// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_GUARD_GUARDED_LOG_H
#define CPP2C_HOST_GUARD_GUARDED_LOG_H

#include <string>
#include <utility>

#include "binding/context.h"
#include "host/guard/guard.h"

class GuardedLog final : public ILog {
 public:
  GuardedLog(Guard& guard, ILog& log) : guard_(guard), log_(log) {}

  int record(std::string module, int level, const char* text) override {
    return guard_.enter({Operation::kRecord, module, viewOf(text)},
                        [&] { return log_.record(std::move(module), level, text); });
  }

 private:
  Guard& guard_;
  ILog& log_;
};

#endif
