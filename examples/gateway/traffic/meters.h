// SPDX-License-Identifier: MIT
// One meter for each interface: its data rate, and whether the rate exceeds the limit. Meters are stored in
// the instance-name cache under the names of their instances in the configuration tree.
#ifndef GATEWAY_TRAFFIC_METERS_H
#define GATEWAY_TRAFFIC_METERS_H

#include <net/if.h>
#include <stdbool.h>
#include <stdint.h>

#include "tree.h"

struct meter {
  char instance[NAME_SIZE];  // full name of its instance in the tree
  char name[IF_NAMESIZE];    // of the interface
  uint64_t bytes;            // received and sent, at the last sample
  uint32_t rate;             // bytes per second between the last two samples
  bool high;                 // the rate is above the limit
  bool seen;                 // found in the current sample
};

// Reads all counters, `elapsed` milliseconds after the previous sample, and updates the meters. New
// interfaces are added, missing ones removed. Sends an event for each rate that crosses `limit`, in bytes per
// second; 0 means no limit. Returns 0 or a result code.
int meters_sample(uint32_t elapsed, uint32_t limit);

// Returns the meter of this instance, or NULL.
const struct meter* meters_find(const char* instance);

// Frees the meters. The tree keeps its latest values.
void meters_free(void);

#endif
