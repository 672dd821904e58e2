// SPDX-License-Identifier: MIT
#include "binding/timer.h"

#include "binding/services.h"

int __NtpTimerCB::timeArrive(int /*value*/) {
  // Do not check for null: the context receives this adapter only after `callback` has been set, so it is
  // null only if the caller passed NULL, which is not allowed.
  return callback();
}

int c_context_set_timer(int first, int period, c_timer_callback callback) {
  IContext* context = currentContext();
  if (context == nullptr) return 0;

  g_timer.callback = callback;
  return context->setTimer(first, 0, period, &g_timer);
}
