// SPDX-License-Identifier: MIT
#include "owner.h"

#include <stdio.h>
#include <string.h>

#include "cpp2c_host.h"
#include "include_c"
#include "tree.h"

// Relative to an instance's name without its final dot: above its own component, then above "Link".
static const char kOwner[] = "PARENT.PARENT.";

static int without_dot(const char* instance, char base[NAME_SIZE]) {
  snprintf(base, NAME_SIZE, "%s", instance);
  return c_cfm_parent_fullname(base);
}

static void report(const char* instance, const char* leaf, int result) {
  char owner[NAME_SIZE];
  if (c_cfm_get_grand_name(instance, owner, sizeof owner) == C_RESULT_OK) {
    c_log_record("address", C_LOG_ERROR, "cannot use %s%s: result %d", owner, leaf, result);
  }
}

static int read_whole(const char* base, const char* leaf, char command[COMMAND_SIZE]) {
  memset(command, 0, COMMAND_SIZE);  // c_cfm_get_value_v2() never writes the last byte
  int result = c_cfm_get_value_v2(base, kOwner, leaf, "str", command, COMMAND_SIZE);
  if (result != C_RESULT_OK || strlen(command) < COMMAND_SIZE - 1) return result;
  return C_RESULT_PARAM;
}

void owner_read_command(const char* instance, const char* leaf, char command[COMMAND_SIZE]) {
  char base[NAME_SIZE];
  int result = without_dot(instance, base);
  if (result == C_RESULT_OK) result = read_whole(base, leaf, command);
  if (result == C_RESULT_OK) return;
  report(instance, leaf, result);
  command[0] = '\0';
}

void owner_count_change(const char* instance) {
  char base[NAME_SIZE];
  uint32_t changes = 0;
  int result = without_dot(instance, base);
  if (result == C_RESULT_OK) {
    result = c_cfm_get_value_v2(base, kOwner, "Changes", "uint", &changes, sizeof changes);
  }
  changes++;
  if (result == C_RESULT_OK) {
    result = c_cfm_set_value_v2(base, kOwner, "Changes", "uint", &changes, sizeof changes, 0);
  }
  if (result != C_RESULT_OK) report(instance, "Changes", result);
}
