// SPDX-License-Identifier: MIT
// Events for links that go up and down.
#ifndef LINKWATCH_LINK_EVENTS_H
#define LINKWATCH_LINK_EVENTS_H

#include <stdbool.h>

// Observes the events, to write them to the log.
void link_events_start(void);
void link_events_stop(void);

// Tells everyone who observes it that a link went up or down.
void link_events_notify(const char* name, bool up);

#endif
