// SPDX-License-Identifier: MIT
#include "host/control/period.h"

#include "host/start_error.h"
#include "include_c"

namespace {

timeval timevalOf(std::chrono::milliseconds time) {
  return {static_cast<time_t>(time.count() / 1000), static_cast<suseconds_t>(time.count() % 1000 * 1000)};
}

}  // namespace

EventPtr callEvery(EventBase& base, std::chrono::milliseconds period, event_callback_fn call,
                   void* argument) {
  EventPtr timer(event_new(base.get(), -1, EV_PERSIST, call, argument));
  const timeval time = timevalOf(period);
  if (timer == nullptr || event_add(timer.get(), &time) != 0) {
    throw StartError(C_RESULT_SYSTEM_CALL, "the control socket's clock cannot be made");
  }
  return timer;
}
