// SPDX-License-Identifier: MIT
#include "context/heartbeat/heartbeat.h"

#include "context/include/cpp2c_host.h"
#include "include_c"

using std::chrono::milliseconds;

Heartbeat::Heartbeat(ILog& log, milliseconds limit, TimePoint (*now)())
    : log_(log), limit_(limit), now_(now) {}

int Heartbeat::lock() {
  if (depth_++ == 0) locked_at_ = now_();
  return C_RESULT_OK;
}

int Heartbeat::unlock() {
  if (depth_ == 0) return C_RESULT_PARAM;
  if (--depth_ == 0) locked_time_ += now_() - locked_at_;
  return C_RESULT_OK;
}

Heartbeat::TimePoint Heartbeat::unlockedTime() const {
  return (depth_ > 0 ? locked_at_ : now_()) - locked_time_;
}

void Heartbeat::check(const std::string& what, TimePoint::duration held) {
  if (held <= limit_) return;
  const auto ms = std::chrono::duration_cast<milliseconds>(held).count();
  const std::string text = "the callback of " + what + " held the loop for " + std::to_string(ms) + " ms";
  log_.record("heartbeat", C_LOG_WARNING, text.c_str());
}
