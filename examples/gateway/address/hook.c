// SPDX-License-Identifier: MIT
#include "hook.h"

#include <stdint.h>

#include "cpp2c_host.h"
#include "include_c"
#include "owner.h"
#include "shell_word.h"

// Bits of the attribute of the module's object. The configuration file sets the first, this module the
// second.
enum { HAS_HOOKS = 1, HOOK_SUSPENDED = 2 };

enum { FAILURES_ALLOWED = 3 };

static int g_failures;  // in a row

static int32_t attribute(void) {
  int32_t word = 0;
  int result = c_cfm_get_attr(ADDRESS_OBJECT, &word);
  if (result != C_RESULT_OK)
    c_log_record("address", C_LOG_ERROR, "cannot read the attribute: result %d", result);
  return word;
}

static void set_suspended(int32_t suspended) {
  int result = c_cfm_set_attr(ADDRESS_OBJECT, (attribute() & ~HOOK_SUSPENDED) | suspended);
  if (result != C_RESULT_OK)
    c_log_record("address", C_LOG_ERROR, "cannot set the attribute: result %d", result);
}

static const char* or_none(const char* address) {
  return address[0] != '\0' ? address : "none";
}

// Blocks the loop on purpose, so the watchdog is suspended.
static int run_held(const char* hook, const struct record* record, const char* previous) {
  char name[SHELL_WORD_SIZE(sizeof record->name)];
  shell_word(name, record->name);
  int held = c_heartbeat_lock();
  int status = c_system_call2("%s %s %s %s", hook, name, or_none(previous), or_none(record->address));
  if (held == C_RESULT_OK) held = c_heartbeat_unlock();
  if (held != C_RESULT_OK)
    c_log_record("address", C_LOG_ERROR, "cannot suspend the watchdog: result %d", held);
  return status;
}

static void show_status(const struct record* record, int status) {
  const int32_t number = status;
  int result = c_cfm_set_value_v2(record->instance, "", "HookStatus", "int", &number, sizeof number, 0);
  if (result != C_RESULT_OK)
    c_log_record("address", C_LOG_ERROR, "cannot write the hook status: result %d", result);
}

// Runs the command "Inspect", whose output goes to the log.
static void inspect(const struct record* record) {
  char command[COMMAND_SIZE];
  char name[SHELL_WORD_SIZE(sizeof record->name)];
  owner_read_command(record->instance, "Inspect", command);
  if (command[0] == '\0') return;
  shell_word(name, record->name);
  int status = c_popen_call("%s %s", command, name);
  if (status != 0) c_log_record("address", C_LOG_WARNING, "inspection failed: status %d", status);
}

static void handle_failure(const struct record* record, int status) {
  c_log_record("address", C_LOG_ERROR, "%s: hook failed: status %d", record->name, status);
  inspect(record);
  if (++g_failures < FAILURES_ALLOWED) return;
  set_suspended(HOOK_SUSPENDED);
  c_log_record("address", C_LOG_ERROR, "hook suspended after %d failures until it is changed", g_failures);
}

void hook_run(const struct record* record, const char* previous) {
  if ((attribute() & (HAS_HOOKS | HOOK_SUSPENDED)) != HAS_HOOKS) return;
  char hook[COMMAND_SIZE];
  owner_read_command(record->instance, "Hook", hook);
  if (hook[0] == '\0') return;

  int status = run_held(hook, record, previous);
  show_status(record, status);
  if (status == 0) {
    g_failures = 0;
  } else {
    handle_failure(record, status);
  }
}

void hook_resume(void) {
  g_failures = 0;
  set_suspended(0);
}
