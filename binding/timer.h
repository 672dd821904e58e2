// SPDX-License-Identifier: MIT
#ifndef CPP2C_BINDING_TIMER_H
#define CPP2C_BINDING_TIMER_H

#include "binding/handlers.h"
#include "include_c"

// Presents the C callback stored last to the context's timer. There is one, `g_timer`, never on the heap.
class __NtpTimerCB : public ITimer {
 public:
  int timeArrive(int value) override;

  c_timer_callback callback = nullptr;
};

#endif
