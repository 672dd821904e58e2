// SPDX-License-Identifier: MIT
#include "sampling.h"

#include <stdbool.h>
#include <time.h>

#include "cpp2c_host.h"
#include "include_c"
#include "meters.h"

static struct {
  uint32_t limit;
  uint64_t last;  // milliseconds, from now()
  bool armed;
} g_sampling;

static uint64_t now(void) {
  struct timespec time;
  clock_gettime(CLOCK_MONOTONIC, &time);
  return (uint64_t)time.tv_sec * 1000 + (uint64_t)time.tv_nsec / 1000000;
}

void sampling_now(void) {
  if (!g_sampling.armed) return;
  uint64_t time = now();
  uint64_t elapsed = time - g_sampling.last;
  g_sampling.last = time;
  int result = meters_sample(elapsed < UINT32_MAX ? (uint32_t)elapsed : UINT32_MAX, g_sampling.limit);
  if (result != C_RESULT_OK) c_log_record("traffic", C_LOG_ERROR, "cannot read counters: result %d", result);
  c_debug_out("traffic", __LINE__, "sampled after %lu ms", (unsigned long)elapsed);
}

static int on_timer(void) {
  sampling_now();
  return C_RESULT_OK;
}

int sampling_start(uint32_t interval, uint32_t limit) {
  int result = c_context_set_timer(0, (int)interval, on_timer);
  if (result != C_RESULT_OK) {
    c_log_record("traffic", C_LOG_ERROR, "cannot arm the timer: result %d", result);
    return result;
  }
  g_sampling.limit = limit;
  if (!g_sampling.armed) g_sampling.last = now();
  g_sampling.armed = true;
  return C_RESULT_OK;
}

void sampling_stop(void) {
  if (!g_sampling.armed) return;
  int result = c_context_set_timer(-1, 0, on_timer);
  if (result != C_RESULT_OK) c_log_record("traffic", C_LOG_ERROR, "cannot stop the timer: result %d", result);
  g_sampling.armed = false;
}
