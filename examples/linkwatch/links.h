// SPDX-License-Identifier: MIT
// The table of watched interfaces. It finds out what changed and passes it on: to the configuration tree, and
// as events.
#ifndef LINKWATCH_LINKS_H
#define LINKWATCH_LINKS_H

#include <time.h>

#include "message.h"
#include "objects.h"

struct link {
  struct link* next;
  char instance[INSTANCE_NAME_SIZE];  // full name of its instance in the tree
  struct link_state state;
  char address[INET_ADDRSTRLEN];  // the first one; empty for none
  time_t changed;
  bool seen;       // the current dump of links has it
  bool addressed;  // the current dump of addresses has an address of it
};

// Takes the news that an interface is as `state` says. Returns whether it was unknown until now.
bool links_update(const struct link_state* state);

// Takes the news that an interface vanished, and with it went down. An unknown one is ignored.
void links_vanish(int index);

// Drops an interface that is not to be watched any more. An unknown one is ignored.
void links_forget(int index);

// Stand around links_update() for every interface that there is: whichever is not among them vanished.
void links_begin(void);
void links_end(void);

// Stand around links_add_address() for every address that there is, in the kernel's order.
void links_begin_addresses(void);
void links_add_address(int index, const char* address);
void links_end_addresses(void);

unsigned links_count(void);

// Frees the table. The tree keeps its last values.
void links_free(void);

#endif
