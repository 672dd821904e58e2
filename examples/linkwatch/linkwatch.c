// SPDX-License-Identifier: MIT
#include "linkwatch.h"

#include "include_c"
#include "link_config.h"
#include "link_events.h"
#include "links.h"
#include "monitor.h"
#include "settings.h"

// The monitor starts last: all observers must be registered before the first message arrives.
static int start_all(void) {
  int result = settings_start(monitor_resync);
  if (result != C_RESULT_OK) return result;
  link_config_start();
  link_events_start();
  return monitor_start();
}

int linkwatch_start(void) {
  int result = start_all();
  if (result != C_RESULT_OK) linkwatch_stop();
  return result;
}

void linkwatch_stop(void) {
  monitor_stop();
  links_free();
  link_events_stop();
  link_config_stop();
  settings_stop();
}
