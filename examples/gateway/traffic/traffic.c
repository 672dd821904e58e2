// SPDX-License-Identifier: MIT
// The traffic module: counters in the configuration tree, and events when the rate of an interface exceeds a
// limit.
#include <stddef.h>

#include "counters.h"
#include "cpp2c_host.h"
#include "include_c"
#include "meters.h"
#include "module_library.h"
#include "sampling.h"
#include "settings.h"
#include "values.h"

static void ignore(const struct counters* counters, void* arg) {
  (void)counters, (void)arg;
}

static int prepare(void) {
  int result = counters_read(ignore, NULL);
  if (result != C_RESULT_OK) c_log_record("traffic", C_LOG_ERROR, "cannot read the kernel's counters");
  return result;
}

static int sample(void) {
  const struct settings* settings = settings_current();
  return sampling_start(settings->interval, settings->limit);
}

static void sample_now(void) {
  (void)sample();  // logs its errors
}

static int start(void) {
  int result = settings_start(sample_now);
  if (result == C_RESULT_OK) values_provide();
  return result;
}

static void stop(void) {
  sampling_stop();
  meters_free();
  settings_stop();
}

const struct service g_service = {
    .name = "traffic",
    .prepare = prepare,
    .start = start,
    .run = sample,
    .stop = stop,
    .refresh = sample_now,  // takes a sample at once
};
