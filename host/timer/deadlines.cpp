// SPDX-License-Identifier: MIT
#include "host/timer/deadlines.h"

#include <new>

namespace host {

Deadlines::Deadlines(EventBase& base, Clock& clock) : clock_(clock) {
  if (clock.isVirtual()) {
    idle_.reset(event_new(base.get(), -1, 0, onTime, this));
    if (idle_ == nullptr) throw std::bad_alloc();
    event_priority_set(idle_.get(), EventBase::kLastPriority);
  } else {
    alarm_.emplace(base, onTime, this);
  }
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
  if (alarm_) {
    alarm_->set(callbacks_.empty() ? std::nullopt : std::optional(callbacks_.begin()->first.first));
    return;
  }
  event_del(idle_.get());
  if (callbacks_.empty()) return;
  constexpr timeval kAtOnce = {0, 0};
  if (event_add(idle_.get(), &kAtOnce) != 0) throw std::bad_alloc();
}

void Deadlines::onTime(evutil_socket_t /*fd*/, short /*events*/, void* self) {
  static_cast<Deadlines*>(self)->callFirst();
}

// Calls one function only, so that the loop handles other events in between. The function is removed from the
// map first because it may add and remove deadlines.
void Deadlines::callFirst() {
  if (callbacks_.empty()) return;  // the last one was removed in this turn of the loop
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
