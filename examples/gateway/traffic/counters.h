// SPDX-License-Identifier: MIT
// The kernel's byte and packet counters.
#ifndef GATEWAY_TRAFFIC_COUNTERS_H
#define GATEWAY_TRAFFIC_COUNTERS_H

#include <net/if.h>
#include <stdint.h>

struct counters {
  char name[IF_NAMESIZE];  // of the interface
  uint64_t rx_bytes;
  uint64_t rx_packets;
  uint64_t tx_bytes;
  uint64_t tx_packets;
};

// Calls `visit` for each interface. Returns 0 or a result code.
int counters_read(void (*visit)(const struct counters* counters, void* arg), void* arg);

// Reads the counters of the interface with this name. Returns 0 or a result code.
int counters_read_one(const char* name, struct counters* counters);

#endif
