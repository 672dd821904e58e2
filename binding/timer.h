// SPDX-License-Identifier: MIT
#ifndef CPP2C_BINDING_TIMER_H
#define CPP2C_BINDING_TIMER_H

#include "binding/handlers.h"
#include "include_c"

// Adapter that calls the C callback set last. `g_timer` is the only object of this class.
class __NtpTimerCB : public ITimer {
 public:
  int timeArrive(int value) override;

  c_timer_callback callback = nullptr;
};

#endif
