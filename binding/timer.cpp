// SPDX-License-Identifier: MIT
#include "binding/timer.h"

#include "binding/services.h"

int __NtpTimerCB::timeArrive(int /*value*/) {
  // Not tested for null: the context is given this adapter only after a callback has been stored, so a null
  // one is what the caller asked for.
  return callback();
}

int c_context_set_timer(int first, int period, c_timer_callback callback) {
  IContext* context = currentContext();
  if (context == nullptr) return 0;

  g_timer.callback = callback;
  return context->setTimer(first, 0, period, &g_timer);
}
