// SPDX-License-Identifier: MIT
#include "host/timer/timers.h"

#include <algorithm>
#include <chrono>
#include <climits>
#include <string>
#include <utility>

#include "binding/handlers.h"
#include "include_c"

namespace host {

using std::chrono::milliseconds;

namespace {

// The key of the registration: the times that the timer is set to.
std::string keyOf(int first, int period) {
  const std::string once = "after " + std::to_string(first) + " ms";
  return period == 0 ? once : once + ", every " + std::to_string(period) + " ms";
}

}  // namespace

Timers::Timers(Deadlines& deadlines, const Clock& clock, Registry& registry)
    : deadlines_(deadlines), clock_(clock), registry_(registry) {}

int Timers::set(int first, int zero, int period, ITimer* timer) {
  if (zero != 0 || period < 0 || timer == nullptr) return C_RESULT_PARAM;

  if (first < 0) {
    disarm(timer);
    return C_RESULT_OK;
  }
  // Everything is allocated before the timer is disarmed: without memory, it stays as it is.
  std::map<ITimer*, Armed> created;
  const Deadlines::Deadline next = deadlines_.in(milliseconds(first));
  created.emplace(timer,
                  Armed{next, milliseconds(period),
                        registry_.add(RegistrationKind::kTimer, keyOf(first, period), calleeOf(*timer))});
  arm(timer, next);
  disarm(timer);
  armed_.merge(created);
  return C_RESULT_OK;
}

void Timers::arm(ITimer* timer, const Deadlines::Deadline& next) {
  deadlines_.add(next, [this, timer] { expire(timer); });
}

void Timers::disarm(ITimer* timer) {
  auto armed = armed_.find(timer);
  if (armed == armed_.end()) return;
  deadlines_.remove(armed->second.next);
  armed_.erase(armed);
}

// The next expiry is computed from the previous one, not from now, so that delays do not add up.
int Timers::countExpiries(Armed& armed) const {
  Clock::TimePoint& next = armed.next.first;
  const auto count = 1 + (clock_.now() - next) / armed.period;
  next = clock_.later(next, count * armed.period);
  return static_cast<int>(std::min<decltype(count)>(count, INT_MAX));
}

// The call comes last because it may re-arm or disarm the timer.
void Timers::expire(ITimer* timer) {
  Armed& armed = armed_.at(timer);
  if (armed.period == Clock::Duration::zero()) {
    const RegistrationHandle last = std::move(armed.registration);
    armed_.erase(timer);
    last.call([timer] { return timer->timeArrive(1); });
    return;
  }
  const int count = countExpiries(armed);
  arm(timer, armed.next);
  armed.registration.call([timer, count] { return timer->timeArrive(count); });
}

}  // namespace host
