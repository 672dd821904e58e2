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

void Deadlines::add(const Deadline& deadline, Callback callback) {
  if (spare_.empty()) {
    callbacks_.emplace(deadline, std::move(callback));
  } else {
    spare_.key() = deadline;
    spare_.mapped() = std::move(callback);
    callbacks_.insert(std::move(spare_));
  }
  arm();
}

void Deadlines::remove(const Deadline& deadline) {
  callbacks_.erase(deadline);
  arm();
}

void Deadlines::arm() {
  event_del(event_.get());
  if (callbacks_.empty()) return;
  const timeval wait = timevalOf(clock_.waitFor(callbacks_.begin()->first.first));
  if (event_add(event_.get(), &wait) != 0) throw std::bad_alloc();
}

void Deadlines::onTime(evutil_socket_t /*fd*/, short /*events*/, void* self) {
  static_cast<Deadlines*>(self)->callFirst();
}

// Calls one function only, so that the loop handles other events in between. The function is removed from the
// map first because it may add and remove deadlines.
void Deadlines::callFirst() {
  Callback callback = [] {};
  auto first = callbacks_.begin();
  if (clock_.reach(first->first.first)) {
    callback = std::move(first->second);
    spare_ = callbacks_.extract(first);
  }
  arm();
  callback();
}

}  // namespace host
