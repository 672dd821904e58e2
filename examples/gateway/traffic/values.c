// SPDX-License-Identifier: MIT
#include "values.h"

#include <inttypes.h>
#include <stddef.h>
#include <stdio.h>
#include <string.h>

#include "counters.h"
#include "include_c"
#include "meters.h"

enum { NUMBER_SIZE = sizeof "18446744073709551615" };

// The counters do not fit the tree's 32-bit types, so their leaves are strings.
static const struct leaf {
  const char* name;
  size_t offset;
} kCounters[] = {
    {"RxBytes", offsetof(struct counters, rx_bytes)},
    {"RxPackets", offsetof(struct counters, rx_packets)},
    {"TxBytes", offsetof(struct counters, tx_bytes)},
    {"TxPackets", offsetof(struct counters, tx_packets)},
};

// The string is empty if the leaf or the interface does not exist.
static void format_counter(char* text, const char* leaf, const char* interface) {
  struct counters counters;
  text[0] = '\0';
  if (counters_read_one(interface, &counters) != C_RESULT_OK) return;
  for (size_t i = 0; i < sizeof kCounters / sizeof kCounters[0]; i++) {
    if (strcmp(kCounters[i].name, leaf) != 0) continue;
    uint64_t number;
    memcpy(&number, (const char*)&counters + kCounters[i].offset, sizeof number);
    snprintf(text, NUMBER_SIZE, "%" PRIu64, number);
  }
}

static void answer_number(void* handle, const char* type, uint32_t number) {
  c_cfm_data_provider_set(handle, type, (char*)&number);
}

// Always answers; without an answer, the reader would get the answer to the previous request.
static void provide(int id, const char* instance, const char* leaf, void* user, void* handle) {
  (void)id, (void)user;
  const struct meter* meter = meters_find(instance);
  if (strcmp(leaf, "Rate") == 0) {
    answer_number(handle, "uint", meter != NULL ? meter->rate : 0);
  } else if (strcmp(leaf, "High") == 0) {
    answer_number(handle, "bool", meter != NULL && meter->high);
  } else {
    char text[NUMBER_SIZE];
    format_counter(text, leaf, meter != NULL ? meter->name : "");
    c_cfm_data_provider_set(handle, "str", text);
  }
}

void values_provide(void) {
  c_cfm_data_provider_regist(TRAFFIC_LINK_OBJECT, provide, NULL);
}
