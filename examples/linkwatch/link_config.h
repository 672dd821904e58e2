// SPDX-License-Identifier: MIT
// One instance of the link object for each interface in the configuration tree.
#ifndef LINKWATCH_LINK_CONFIG_H
#define LINKWATCH_LINK_CONFIG_H

#include "links.h"

// Observes the link object. Comes before the first interface is in the table: registering an observer clears
// the user data of every instance that the tree has.
void link_config_start(void);
void link_config_stop(void);

// Writes all values of an interface; creates its instance if there is none.
void link_config_write(const struct link* link);

void link_config_remove(const struct link* link);

#endif
