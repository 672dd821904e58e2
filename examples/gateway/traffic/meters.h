// SPDX-License-Identifier: MIT
// One meter for each interface: how fast its counters grow, and whether that is more than it should be.
// Meters are filed in the instance-name cache, under the names of their instances in the configuration tree.
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
  uint32_t rate;             // bytes a second, between the last two samples
  bool high;                 // the rate is above the limit
  bool seen;                 // the current sample has the interface
};

// Reads all counters, `elapsed` milliseconds after the last time, and brings the meters up to date. An
// interface is added when it is first seen and removed when it is gone. Events tell of rates that cross
// `limit` bytes a second; 0 is no limit. Returns 0 or a result code.
int meters_sample(uint32_t elapsed, uint32_t limit);

// The meter of that instance, or NULL.
const struct meter* meters_find(const char* instance);

// Frees the meters. The tree keeps its last values.
void meters_free(void);

#endif
