// SPDX-License-Identifier: MIT
#include "meters.h"

#include <inttypes.h>
#include <stdio.h>
#include <string.h>

#include "counters.h"
#include "cpp2c_host.h"
#include "include_c"

enum { EVENT_SIZE = IF_NAMESIZE + sizeof " 4294967295" };

struct sample {
  uint32_t elapsed;
  uint32_t limit;
};

static void report(const char* problem, const struct meter* meter, int result) {
  c_log_record("traffic", C_LOG_ERROR, "%s: %s: result %d", meter->name, problem, result);
}

static int write_name(const struct meter* meter, int option) {
  return c_cfm_set_value_v2(meter->instance, "", "Name", "str", meter->name, sizeof meter->name, option);
}

static struct meter* add(const char* instance) {
  struct meter* meter = (struct meter*)(void*)c_malloc(sizeof *meter, __FILE__, __LINE__);
  if (meter == NULL) return NULL;
  snprintf(meter->instance, sizeof meter->instance, "%s", instance);
  c_dbc_add_userdata(TRAFFIC_LINK_OBJECT, meter->instance, meter);
  return meter;
}

static void release(struct meter* meter) {
  c_dbc_db_release(TRAFFIC_LINK_OBJECT, meter->instance);
  c_free((char*)meter);
}

// Handles the first sample of an interface, and the first one under a new name: there is no rate yet.
static void begin(struct meter* meter, const struct counters* counters) {
  memcpy(meter->name, counters->name, sizeof meter->name);
  meter->bytes = counters->rx_bytes + counters->tx_bytes;
  int result = write_name(meter, C_CFM_CREATE);
  if (result != C_RESULT_OK) report("cannot write its name", meter, result);
}

static uint32_t rate_of(uint64_t bytes, uint32_t elapsed) {
  uint64_t rate = bytes * 1000 / elapsed;
  return rate < UINT32_MAX ? (uint32_t)rate : UINT32_MAX;
}

static void check_limit(struct meter* meter, uint32_t limit) {
  bool high = limit != 0 && meter->rate > limit;
  if (high == meter->high) return;
  meter->high = high;
  char text[EVENT_SIZE];
  snprintf(text, sizeof text, "%s %" PRIu32, meter->name, meter->rate);
  c_event_notify(high ? "traffic-high" : "traffic-normal", text);
}

static void measure(struct meter* meter, const struct counters* counters, const struct sample* sample) {
  if (sample->elapsed == 0) return;  // the next sample includes the difference
  uint64_t bytes = counters->rx_bytes + counters->tx_bytes;
  // Lower counters belong to another interface with the same index or were reset.
  meter->rate = bytes >= meter->bytes ? rate_of(bytes - meter->bytes, sample->elapsed) : 0;
  meter->bytes = bytes;
  check_limit(meter, sample->limit);
}

static void take(const struct counters* counters, void* arg) {
  unsigned index = if_nametoindex(counters->name);
  if (index == 0) return;  // removed since the kernel wrote the line

  char instance[NAME_SIZE];
  snprintf(instance, sizeof instance, TRAFFIC_LINK_NAME "%u.", index);
  struct meter* meter = c_dbc_get_userdata(TRAFFIC_LINK_OBJECT, instance);
  if (meter == NULL) meter = add(instance);
  if (meter == NULL) {
    c_log_record("traffic", C_LOG_ERROR, "%s: out of memory, not metered", counters->name);
    return;
  }
  meter->seen = true;
  if (strcmp(meter->name, counters->name) != 0) begin(meter, counters);
  measure(meter, counters, arg);
}

static int forget_seen(int id, char* name, void* userdata, c_pass_fn3 fn3, c_pass_fn4 fn4, void* arg) {
  (void)id, (void)name, (void)fn3, (void)fn4, (void)arg;
  struct meter* meter = userdata;
  meter->seen = false;
  return 0;
}

static int remove_unseen(int id, char* name, void* userdata, c_pass_fn3 fn3, c_pass_fn4 fn4, void* arg) {
  (void)id, (void)name, (void)fn3, (void)fn4, (void)arg;
  struct meter* meter = userdata;
  if (meter->seen) return 0;
  meter->rate = 0;
  check_limit(meter, 0);
  int result = write_name(meter, C_CFM_DELETE);
  if (result != C_RESULT_OK) report("cannot delete its instance", meter, result);
  release(meter);
  return 0;
}

int meters_sample(uint32_t elapsed, uint32_t limit) {
  struct sample sample = {elapsed, limit};
  c_dbc_lookup(TRAFFIC_LINK_OBJECT, forget_seen, NULL, NULL, NULL);
  int result = counters_read(take, &sample);
  // An incomplete list does not show that an interface was removed.
  if (result == C_RESULT_OK) c_dbc_lookup(TRAFFIC_LINK_OBJECT, remove_unseen, NULL, NULL, NULL);
  return result;
}

const struct meter* meters_find(const char* instance) {
  return c_dbc_get_userdata(TRAFFIC_LINK_OBJECT, instance);
}

static int free_meter(int id, char* name, void* userdata, c_pass_fn3 fn3, c_pass_fn4 fn4, void* arg) {
  (void)id, (void)name, (void)fn3, (void)fn4, (void)arg;
  c_free(userdata);
  return 0;
}

void meters_free(void) {
  c_dbc_lookup(TRAFFIC_LINK_OBJECT, free_meter, NULL, NULL, NULL);
  c_dbc_db_release_all(TRAFFIC_LINK_OBJECT);
}
