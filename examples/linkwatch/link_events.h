// SPDX-License-Identifier: MIT
// The events for links that go up and down.
#ifndef LINKWATCH_LINK_EVENTS_H
#define LINKWATCH_LINK_EVENTS_H

#include <stdbool.h>

// Observes the events to print them.
void link_events_start(void);
void link_events_stop(void);

// Sends the event that a link went up or down.
void link_events_notify(const char* name, bool up);

#endif
