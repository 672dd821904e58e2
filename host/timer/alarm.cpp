// SPDX-License-Identifier: MIT
#include "host/timer/alarm.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include "include_c"
#include "util/error.h"

namespace host {
namespace {

// The kernel's clock CLOCK_MONOTONIC is that of std::chrono::steady_clock. A time of 0 stops the timer.
itimerspec settingOf(std::optional<Alarm::TimePoint> time) {
  itimerspec setting{};
  if (!time) return setting;
  const auto since = time->time_since_epoch();
  const auto seconds = std::chrono::floor<std::chrono::seconds>(since);
  setting.it_value.tv_sec = static_cast<time_t>(seconds.count());
  setting.it_value.tv_nsec = static_cast<decltype(setting.it_value.tv_nsec)>(
      std::chrono::duration_cast<std::chrono::nanoseconds>(since - seconds).count());
  return setting;
}

}  // namespace

Alarm::Alarm(EventBase& base, event_callback_fn callback, void* argument)
    : base_(base), callback_(callback), argument_(argument) {
  open();
}

Alarm::~Alarm() {
  close();
}

void Alarm::open() {
  process_ = getpid();
  fd_ = timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC);
  event_.reset(event_new(base_.get(), fd_, EV_READ | EV_PERSIST, callback_, argument_));
  if (fd_ >= 0 && event_ != nullptr && event_add(event_.get(), nullptr) == 0) return;
  close();
  throw util::Error(C_RESULT_SYSTEM_CALL, "cannot create a timer");
}

void Alarm::close() {
  event_.reset();
  if (fd_ >= 0) ::close(fd_);
  fd_ = -1;
}

// The timer is never read: it stays ready until it is set again. A forked process opens its own, because
// both would set the same one. If the kernel refuses the setting, the callback, which sets the next time,
// is called in the next turn.
void Alarm::set(std::optional<TimePoint> time) {
  if (time == time_) return;
  if (getpid() != process_ && base_.separateFromParent()) {
    close();
    open();
  }
  const itimerspec setting = settingOf(time);
  const bool is_set = timerfd_settime(fd_, TFD_TIMER_ABSTIME, &setting, nullptr) == 0;
  time_ = is_set ? time : std::nullopt;
  if (!is_set) event_active(event_.get(), EV_READ, 0);
}

}  // namespace host
