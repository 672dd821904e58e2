// SPDX-License-Identifier: MIT
#include "debug.h"

#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include "include_c"
#include "tree.h"

static int read_setting(int32_t* on) {
  return c_cfm_get_value(GATEWAY_NAME "Debug", "bool", on, sizeof *on);
}

static int on_changed(void* user, int id, const char* instance, int operation, const char* leaf) {
  (void)user, (void)id, (void)operation;
  if (strcmp(leaf, "Debug") != 0) return C_RESULT_OK;
  int32_t on = 0;
  int result = read_setting(&on);
  if (result == C_RESULT_OK) result = c_context_debug_switch(on);
  printf("settings: %s%s changed: diagnostics are %s\n", instance, leaf, on ? "logged" : "not logged");
  return result;
}

// At the start, the setting can only switch diagnostics on, because --debug may have done so already.
int debug_start(void) {
  int32_t on = 0;
  int result = read_setting(&on);
  if (result == C_RESULT_OK && on) result = c_context_debug_switch(on);
  if (result == C_RESULT_OK) c_cfm_regist_observer(GATEWAY_OBJECT, on_changed, NULL);
  return result;
}

void debug_stop(void) {
  c_cfm_unregist_observer(GATEWAY_OBJECT, on_changed);
}
