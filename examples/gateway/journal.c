// SPDX-License-Identifier: MIT
#include "journal.h"

#include <stddef.h>
#include <stdio.h>

#include "events.h"
#include "include_c"

static int print_event(void* user, const char* event, const char* data, const char* source) {
  (void)user, (void)source;
  return printf("event: %s %s\n", event, data) > 0 ? C_RESULT_OK : C_RESULT_SYSTEM_CALL;
}

void journal_start(void) {
  for (size_t i = 0; i < EVENT_COUNT; i++) c_event_regist_observer(kEvents[i], print_event, NULL);
}

// Unregisters in the order of registration: only the function identifies a registration, and the oldest one
// is removed first.
void journal_stop(void) {
  for (size_t i = 0; i < EVENT_COUNT; i++) c_event_unregist_observer(kEvents[i], print_event);
}
