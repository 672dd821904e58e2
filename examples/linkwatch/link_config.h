// SPDX-License-Identifier: MIT
// Keeps one instance of the link object in the configuration tree for each interface.
#ifndef LINKWATCH_LINK_CONFIG_H
#define LINKWATCH_LINK_CONFIG_H

#include "links.h"

// Observes the link object. Call this before the first interface is in the table: registering an observer
// clears the user data of every instance in the tree.
void link_config_start(void);
void link_config_stop(void);

// Writes all values of an interface; creates its instance if it does not exist.
void link_config_write(const struct link* link);

// Deletes the instance of an interface.
void link_config_remove(const struct link* link);

#endif
