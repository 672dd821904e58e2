// SPDX-License-Identifier: MIT
// One record for each interface in use, that is, up or with an address. Records are stored in the
// instance-name cache and written to the configuration tree, under the names of their instances.
#ifndef GATEWAY_ADDRESS_RECORDS_H
#define GATEWAY_ADDRESS_RECORDS_H

#include <net/if.h>
#include <netinet/in.h>
#include <stdbool.h>

#include "tree.h"

struct record {
  char instance[NAME_SIZE];        // full name of its instance in the tree
  char name[IF_NAMESIZE];          // of the interface
  char address[INET6_ADDRSTRLEN];  // empty if there is none
  bool up;
  int users;  // number of uses
  bool seen;  // found in the current walk over the interfaces
};

// Returns the record of this instance, or NULL.
struct record* records_find(const char* instance);

// Creates a record without uses. Returns NULL if there is no memory.
struct record* records_make(const char* instance);

// Set the name or state of the interface in the record and the tree. Being up and having an address are one
// use each.
void records_set_name(struct record* record, const char* name);
void records_set_up(struct record* record, bool up);
void records_set_address(struct record* record, const char* address);

// Removes a record without uses, also from the tree.
void records_remove_if_unused(struct record* record);

// Frees a record and releases its uses. The tree keeps its latest values.
void records_free(struct record* record);

#endif
