// SPDX-License-Identifier: MIT
#include "context/timer/timers.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <string>
#include <utility>

#include "binding/handlers.h"
#include "include_c"

namespace {

timespec timeOf(int ms) {
  return {ms / 1000, (ms % 1000) * 1000000L};
}

// To the kernel, a first time of zero would mean to disarm.
timespec firstTimeOf(int ms) {
  return ms > 0 ? timeOf(ms) : timespec{0, 1};
}

// What the timer is set to, for whoever looks at the registrations.
std::string keyOf(int first, int period) {
  const std::string once = "after " + std::to_string(first) + " ms";
  return period == 0 ? once : once + ", every " + std::to_string(period) + " ms";
}

}  // namespace

// One timer on a descriptor of its own: the kernel keeps the time and counts the expiries.
class Timers::Armed {
 public:
  Armed(Timers& timers, ITimer* timer, bool once, Registration registration)
      : timers_(timers), timer_(timer), once_(once), registration_(std::move(registration)) {}
  ~Armed();
  Armed(const Armed&) = delete;
  Armed& operator=(const Armed&) = delete;

  bool start(int first, int period);

 private:
  static void onReadable(evutil_socket_t fd, short events, void* self);
  int takeExpiries() const;
  void expire();

  Timers& timers_;
  ITimer* const timer_;
  const bool once_;
  Registration registration_;
  int fd_ = -1;
  EventPtr event_;
};

Timers::Armed::~Armed() {
  event_.reset();
  if (fd_ >= 0) close(fd_);
}

bool Timers::Armed::start(int first, int period) {
  fd_ = timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK);
  const itimerspec times{timeOf(period), firstTimeOf(first)};
  if (fd_ < 0 || timerfd_settime(fd_, 0, &times, nullptr) != 0) return false;
  event_.reset(event_new(timers_.base_.get(), fd_, EV_READ | EV_PERSIST, onReadable, this));
  return event_ != nullptr && event_add(event_.get(), nullptr) == 0;
}

int Timers::Armed::takeExpiries() const {
  std::uint64_t count = 0;
  if (read(fd_, &count, sizeof count) != sizeof count) return 0;
  return static_cast<int>(std::min<std::uint64_t>(count, INT_MAX));
}

void Timers::Armed::onReadable(evutil_socket_t /*fd*/, short /*events*/, void* self) {
  static_cast<Armed*>(self)->expire();
}

void Timers::Armed::expire() {
  const int count = takeExpiries();
  if (count == 0) return;

  // The call may arm the timer anew or disarm it, so this object is done with before it.
  ITimer* const timer = timer_;
  const auto call = [timer, count] { return timer->timeArrive(count); };
  if (!once_) {
    registration_.call(call);
    return;
  }
  const Registration last = std::move(registration_);
  timers_.armed_.erase(timer);
  last.call(call);
}

Timers::Timers(EventBase& base, Registry& registry) : base_(base), registry_(registry) {}

Timers::~Timers() = default;

int Timers::set(int first, int zero, int period, ITimer* timer) {
  if (zero != 0 || period < 0 || timer == nullptr) return C_RESULT_PARAM;

  armed_.erase(timer);
  if (first < 0) return C_RESULT_OK;
  auto armed = std::make_unique<Armed>(*this, timer, period == 0,
                                       registry_.add(Kind::kTimer, keyOf(first, period), calleeOf(*timer)));
  if (!armed->start(first, period)) return C_RESULT_SYSTEM_CALL;
  armed_.emplace(timer, std::move(armed));
  return C_RESULT_OK;
}
