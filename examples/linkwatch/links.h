// SPDX-License-Identifier: MIT
// The table of watched interfaces. It detects changes, writes them to the configuration tree and sends
// events.
#ifndef LINKWATCH_LINKS_H
#define LINKWATCH_LINKS_H

#include <time.h>

#include "message.h"
#include "objects.h"

struct link {
  struct link* next;
  char instance[INSTANCE_NAME_SIZE];  // full name of its instance in the tree
  struct link_state state;
  char address[INET_ADDRSTRLEN];  // the first IPv4 address, or empty
  time_t changed;
  bool seen;       // in the current dump of links
  bool addressed;  // has an address in the current dump of addresses
};

// Sets the state of an interface; adds the interface if it is unknown. Returns whether it was added.
bool links_update(const struct link_state* state);

// Removes an interface that vanished, and sends link-down if it was up. Ignores unknown interfaces.
void links_vanish(int index);

// Removes an interface that is no longer to be watched. Ignores unknown interfaces.
void links_forget(int index);

// Enclose a dump, which calls links_update() for every existing interface: all others vanished.
void links_begin(void);
void links_end(void);

// Enclose a dump, which calls links_add_address() for every existing address in the kernel's order.
void links_begin_addresses(void);
void links_add_address(int index, const char* address);
void links_end_addresses(void);

unsigned links_count(void);

// Frees the table. The tree keeps its latest values.
void links_free(void);

#endif
