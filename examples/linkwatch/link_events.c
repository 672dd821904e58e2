// SPDX-License-Identifier: MIT
#include "link_events.h"

#include <stddef.h>

#include "include_c"
#include "say.h"

static const char kLinkUp[] = "link-up";
static const char kLinkDown[] = "link-down";

static int on_link_event(void* user, const char* event, const char* data, const char* source) {
  (void)user;
  say(SAY_NEWS, "event: %s %s, raised by %s", event, data, source);
  return 0;
}

void link_events_start(void) {
  c_event_regist_observer(kLinkUp, on_link_event, NULL);
  c_event_regist_observer(kLinkDown, on_link_event, NULL);
}

// Unregisters in the order of registration: only the function identifies a registration, and the oldest one
// is removed first. The library keeps the memory of a removed registration until the process ends.
void link_events_stop(void) {
  c_event_unregist_observer(kLinkUp, on_link_event);
  c_event_unregist_observer(kLinkDown, on_link_event);
}

void link_events_notify(const char* name, bool up) {
  c_event_notify(up ? kLinkUp : kLinkDown, name);
}
