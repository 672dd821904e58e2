// SPDX-License-Identifier: MIT
// The traffic module's own settings, kept in the configuration tree.
#ifndef GATEWAY_TRAFFIC_SETTINGS_H
#define GATEWAY_TRAFFIC_SETTINGS_H

#include <stdint.h>

struct settings {
  uint32_t interval;  // between samples, in milliseconds
  uint32_t limit;     // of each interface, in bytes a second; 0 for none
};

// Reads the settings and follows their changes; `changed` is called after each that can be used. Returns 0 or
// a result code; on failure nothing is followed.
int settings_start(void (*changed)(void));
void settings_stop(void);

// The settings that were read last.
const struct settings* settings_current(void);

#endif
