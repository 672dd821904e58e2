// SPDX-License-Identifier: MIT
// The traffic module: counters in the configuration tree, and events when an interface has too much to do.
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
  if (result != C_RESULT_OK) c_log_record("traffic", C_LOG_ERROR, "the kernel gives no counters");
  return result;
}

static int sample(void) {
  const struct settings* settings = settings_current();
  return sampling_start(settings->interval, settings->limit);
}

static void sample_anew(void) {
  (void)sample();  // has told what is wrong
}

static int start(void) {
  int result = settings_start(sample_anew);
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
    .refresh = sample_anew,  // the first sample comes at once
};
