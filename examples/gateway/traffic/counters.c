// SPDX-License-Identifier: MIT
#include "counters.h"

#include <inttypes.h>
#include <stdbool.h>
#include <stdio.h>
#include <string.h>

#include "include_c"

enum { LINE_SIZE = 512 };

// Unlike /sys/class/net, this file shows the network namespace of the process.
static const char kTable[] = "/proc/self/net/dev";

// A line has the name, a colon, eight receive counters and eight transmit counters. Headings have no colon.
static bool parse(const char* line, struct counters* counters) {
  const char* colon = strchr(line, ':');
  const char* name = line + strspn(line, " ");
  if (colon == NULL || colon - name >= IF_NAMESIZE) return false;

  memset(counters, 0, sizeof *counters);
  memcpy(counters->name, name, (size_t)(colon - name));
  return sscanf(colon + 1, "%" SCNu64 "%" SCNu64 "%*u%*u%*u%*u%*u%*u%" SCNu64 "%" SCNu64, &counters->rx_bytes,
                &counters->rx_packets, &counters->tx_bytes, &counters->tx_packets) == 4;
}

int counters_read(void (*visit)(const struct counters* counters, void* arg), void* arg) {
  FILE* table = fopen(kTable, "re");
  if (table == NULL) return C_RESULT_SYSTEM_CALL;

  char line[LINE_SIZE];
  struct counters counters;
  while (fgets(line, sizeof line, table) != NULL) {
    if (parse(line, &counters)) visit(&counters, arg);
  }
  int result = ferror(table) ? C_RESULT_SYSTEM_CALL : C_RESULT_OK;
  fclose(table);
  return result;
}

struct search {
  const char* name;
  struct counters* found;
  int result;
};

static void take_if_wanted(const struct counters* counters, void* arg) {
  struct search* search = arg;
  if (strcmp(counters->name, search->name) != 0) return;
  *search->found = *counters;
  search->result = C_RESULT_OK;
}

int counters_read_one(const char* name, struct counters* counters) {
  struct search search = {name, counters, C_RESULT_NOT_FOUND};
  int result = counters_read(take_if_wanted, &search);
  return result == C_RESULT_OK ? search.result : result;
}
