// SPDX-License-Identifier: MIT
// One record for each interface that is in use, which it is while it is up or has an address. Records are
// filed in the instance-name cache, and shown in the configuration tree, under the names of their own
// instances.
#ifndef GATEWAY_ADDRESS_RECORDS_H
#define GATEWAY_ADDRESS_RECORDS_H

#include <net/if.h>
#include <netinet/in.h>
#include <stdbool.h>

#include "tree.h"

struct record {
  char instance[NAME_SIZE];        // full name of its instance in the tree
  char name[IF_NAMESIZE];          // of the interface
  char address[INET6_ADDRSTRLEN];  // empty for none
  bool up;
  int users;  // count of its uses
  bool seen;  // the current walk over the interfaces has met it
};

// The record of that instance, or NULL.
struct record* records_find(const char* instance);

// Makes a record that has no use yet. NULL for want of memory.
struct record* records_make(const char* instance);

// Take over what is new of the interface and show it in the tree. Being up and having an address are one use
// each.
void records_set_name(struct record* record, const char* name);
void records_set_up(struct record* record, bool up);
void records_set_address(struct record* record, const char* address);

// Removes a record without a use, from the tree as well.
void records_remove_if_unused(struct record* record);

// Frees a record and gives its uses back. The tree keeps its last values.
void records_free(struct record* record);

#endif
