// SPDX-License-Identifier: MIT
// The traffic module's settings in the configuration tree.
#ifndef GATEWAY_TRAFFIC_SETTINGS_H
#define GATEWAY_TRAFFIC_SETTINGS_H

#include <stdint.h>

struct settings {
  uint32_t interval;  // between samples, in milliseconds
  uint32_t limit;     // for each interface, in bytes per second; 0 for none
};

// Reads the settings and observes them; `changed` is called after each valid change. Returns 0 or a result
// code; on failure nothing is observed.
int settings_start(void (*changed)(void));
void settings_stop(void);

// Returns the latest valid settings.
const struct settings* settings_current(void);

#endif
