// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONTROL_PERIOD_H
#define CPP2C_HOST_CONTROL_PERIOD_H

#include <chrono>

#include "host/loop/event_base.h"

// Has a function called again and again, for as long as the event is kept. Throws StartError.
EventPtr callEvery(EventBase& base, std::chrono::milliseconds period, event_callback_fn call, void* argument);

#endif
