// SPDX-License-Identifier: MIT
#include "host/heartbeat/heartbeat.h"

#include "host/include/cpp2c_host.h"
#include "include_c"

namespace host {

using std::chrono::milliseconds;

Heartbeat::Heartbeat(ILog& log, milliseconds limit, TimePoint (*now)())
    : log_(log), limit_(limit), now_(now) {}

int Heartbeat::lock() {
  if (locks_++ == 0) locked_at_ = now_();
  return C_RESULT_OK;
}

int Heartbeat::unlock() {
  if (locks_ == 0) return C_RESULT_PARAM;
  if (--locks_ == 0) locked_time_ += now_() - locked_at_;
  return C_RESULT_OK;
}

Heartbeat::Reading Heartbeat::read() const {
  const TimePoint now = now_();
  return {now, locked_time_ + (locks_ > 0 ? now - locked_at_ : TimePoint::duration(0)), locks_};
}

void Heartbeat::check(const Reading& before, const Reading& after,
                      const std::function<std::string()>& describe) {
  const auto held = (after.time - before.time) - (after.locked - before.locked);
  if (held <= limit_) return;
  const auto ms = std::chrono::duration_cast<milliseconds>(held).count();
  const std::string text = "the callback " + describe() + " held the loop for " + std::to_string(ms) + " ms";
  log_.record("heartbeat", C_LOG_WARNING, text.c_str());
}

}  // namespace host
