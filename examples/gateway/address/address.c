// SPDX-License-Identifier: MIT
// The address module: counts the uses of each interface and runs a command when an address changes.
#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include "cpp2c_host.h"
#include "follow.h"
#include "hook.h"
#include "include_c"
#include "module_library.h"
#include "owner.h"
#include "tree.h"

static bool g_started;

static int on_setting_changed(void* user, int id, const char* instance, int operation, const char* leaf) {
  (void)user, (void)id, (void)operation;
  if (strcmp(leaf, "Hook") != 0) return C_RESULT_OK;
  c_log_record("address", C_LOG_INFO, "%s%s changed", instance, leaf);
  hook_resume();
  return C_RESULT_OK;
}

// Refuses to start twice: a copy of this library under another name would run every hook again.
static int start(void) {
  int32_t attribute;
  int result = c_cfm_get_attr(ADDRESS_OBJECT, &attribute);
  if (result != C_RESULT_OK) {
    c_log_record("address", C_LOG_ERROR, "there is no object " ADDRESS_NAME);
    return result;
  }
  if (c_cfm_get_regist_observer_callback(ADDRESS_OBJECT) != NULL) {
    c_log_record("address", C_LOG_ERROR, "another copy of the module is running");
    return C_RESULT_REDUNDANT;
  }
  c_cfm_regist_observer(ADDRESS_OBJECT, on_setting_changed, NULL);
  follow_start();
  g_started = true;
  return C_RESULT_OK;
}

// c_system_call() echoes the command and does not return its exit status, which is not needed here.
static int run_at_start(void) {
  char command[COMMAND_SIZE] = "";
  int result = c_cfm_get_value(ADDRESS_NAME "OnStart", "str", command, sizeof command);
  if (result != C_RESULT_OK) return result;
  if (strlen(command) == COMMAND_SIZE - 1) return C_RESULT_PARAM;  // probably cut
  if (command[0] != '\0' && c_system_call("%s", command) <= 0) {
    c_log_record("address", C_LOG_WARNING, "the start command was not echoed");
  }
  return C_RESULT_OK;
}

static int run(void) {
  int result = run_at_start();
  if (result == C_RESULT_OK) follow_refresh();
  return result;
}

static void stop(void) {
  if (!g_started) return;
  follow_stop();
  c_cfm_unregist_observer(ADDRESS_OBJECT, on_setting_changed);
  g_started = false;
}

const struct service g_service = {
    .name = "address",
    .start = start,
    .run = run,
    .stop = stop,
    .refresh = follow_refresh,
};
