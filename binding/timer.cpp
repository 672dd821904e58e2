// SPDX-License-Identifier: MIT
#include "binding/timer.h"

int __NtpTimerCB::timeArrive(int /*value*/) {
  // Not tested for null: the context is given this adapter only after a callback has been stored, so a null
  // one is what the caller asked for.
  return callback();
}
