// SPDX-License-Identifier: MIT
// The events that the modules send. Their data begins with the name of the interface.
#ifndef GATEWAY_EVENTS_H
#define GATEWAY_EVENTS_H

enum { EVENT_COUNT = 5 };

extern const char* const kEvents[EVENT_COUNT];

#endif
