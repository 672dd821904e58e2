// SPDX-License-Identifier: MIT
// The service's settings in the configuration tree.
#ifndef LINKWATCH_SETTINGS_H
#define LINKWATCH_SETTINGS_H

#include <stdbool.h>

// Reads the settings and observes them. `changed` is called after each change of the interfaces to watch.
// Returns 0 or a result code; on failure nothing is observed.
int settings_start(void (*changed)(void));
void settings_stop(void);

// Returns whether the interface with this name is to be watched.
bool settings_watch(const char* name);

// Returns whether settings are to be read from standard input. Only the value at the start matters.
bool settings_console(void);

// Writes a setting to the tree, "Interfaces" or "LogLevel". Returns 0 or a result code.
int settings_change(const char* leaf, const char* text);

#endif
