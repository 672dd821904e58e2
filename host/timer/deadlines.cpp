// SPDX-License-Identifier: MIT
#include "host/timer/deadlines.h"

#include <new>

namespace host {

Deadlines::Deadlines(EventBase& base, Clock& clock)
    : clock_(clock), event_(event_new(base.get(), -1, 0, onTime, this)) {
  if (event_ == nullptr) throw std::bad_alloc();
  if (clock.isVirtual()) event_priority_set(event_.get(), EventBase::kLastPriority);
}

Deadlines::Deadline Deadlines::in(Clock::Duration delay) {
  return {clock_.later(clock_.now(), delay), next_number_++};
}

void Deadlines::add(const Deadline& deadline, Call call) {
  calls_.emplace(deadline, std::move(call));
  arm();
}

void Deadlines::remove(const Deadline& deadline) {
  calls_.erase(deadline);
  arm();
}

void Deadlines::arm() {
  event_del(event_.get());
  if (calls_.empty()) return;
  const timeval wait = timevalOf(clock_.waitFor(calls_.begin()->first.first));
  if (event_add(event_.get(), &wait) != 0) throw std::bad_alloc();
}

void Deadlines::onTime(evutil_socket_t /*fd*/, short /*events*/, void* self) {
  static_cast<Deadlines*>(self)->callFirst();
}

// One at a time: the loop looks after everything else in between. The call is out of the map before it is
// made because it may add and remove deadlines.
void Deadlines::callFirst() {
  Call call = [] {};
  auto first = calls_.begin();
  if (clock_.reach(first->first.first)) {
    call = std::move(first->second);
    calls_.erase(first);
  }
  arm();
  call();
}

}  // namespace host
