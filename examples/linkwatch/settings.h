// SPDX-License-Identifier: MIT
// The service's own settings, kept in the configuration tree.
#ifndef LINKWATCH_SETTINGS_H
#define LINKWATCH_SETTINGS_H

#include <stdbool.h>

// Reads the settings and follows their changes. `changed` is called after each change of the interfaces to
// watch. Returns 0 or a result code; on failure nothing is followed.
int settings_start(void (*changed)(void));
void settings_stop(void);

// Whether the interface of that name is to be watched.
bool settings_watch(const char* name);

// Whether settings are to be read from standard input; has an effect at the start only.
bool settings_console(void);

// Changes one setting in the tree: "Interfaces" or "LogLevel". Returns 0 or a result code.
int settings_change(const char* leaf, const char* text);

#endif
