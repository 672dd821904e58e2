// SPDX-License-Identifier: MIT
#include "settings.h"

#include <inttypes.h>
#include <stddef.h>

#include "cpp2c_host.h"
#include "include_c"
#include "tree.h"

static const char kInterval[] = TRAFFIC_NAME "Interval";
static const char kLimit[] = TRAFFIC_NAME "Limit";

// Each sample reads the kernel's whole list, and c_context_set_timer() takes times as positive integers.
static const uint32_t kShortest = 10;
static const uint32_t kLongest = INT32_MAX;

static struct settings g_settings;
static void (*g_changed)(void);

static int read_setting(const char* name, uint32_t* number) {
  int result = c_cfm_get_value(name, "uint", number, sizeof *number);
  if (result != C_RESULT_OK) c_log_record("traffic", C_LOG_ERROR, "cannot read %s: result %d", name, result);
  return result;
}

// Replaces all settings or none.
static int load_settings(void) {
  struct settings fresh;
  int result = read_setting(kInterval, &fresh.interval);
  if (result == C_RESULT_OK) result = read_setting(kLimit, &fresh.limit);
  if (result != C_RESULT_OK) return result;

  if (fresh.interval < kShortest || fresh.interval > kLongest) {
    c_log_record("traffic", C_LOG_ERROR, "an interval of %" PRIu32 " ms is out of range", fresh.interval);
    return C_RESULT_PARAM;
  }
  g_settings = fresh;
  c_log_record("traffic", C_LOG_INFO, "sampling every %" PRIu32 " ms, limit %" PRIu32 " B/s", fresh.interval,
               fresh.limit);
  return C_RESULT_OK;
}

// Invalid settings must not be saved, because the next start would fail.
static void revert_interval(void) {
  int result = c_cfm_set_value(kInterval, 0, "uint", &g_settings.interval, sizeof g_settings.interval);
  if (result != C_RESULT_OK)
    c_log_record("traffic", C_LOG_ERROR, "cannot revert the interval: result %d", result);
}

static int on_changed(void* user, int id, const char* instance, int operation, const char* leaf) {
  (void)user, (void)id, (void)operation;
  c_log_record("traffic", C_LOG_INFO, "%s%s changed", instance, leaf);
  int result = load_settings();
  if (result == C_RESULT_OK) g_changed();
  if (result == C_RESULT_PARAM) revert_interval();
  return result;
}

int settings_start(void (*changed)(void)) {
  int result = load_settings();
  if (result != C_RESULT_OK) return result;
  g_changed = changed;
  c_cfm_regist_observer(TRAFFIC_OBJECT, on_changed, NULL);
  return C_RESULT_OK;
}

void settings_stop(void) {
  c_cfm_unregist_observer(TRAFFIC_OBJECT, on_changed);
}

const struct settings* settings_current(void) {
  return &g_settings;
}
