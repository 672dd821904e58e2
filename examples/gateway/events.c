// SPDX-License-Identifier: MIT
#include "events.h"

const char* const kEvents[EVENT_COUNT] = {"link-up", "link-down", "traffic-high", "traffic-normal",
                                          "address-changed"};
