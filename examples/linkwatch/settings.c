// SPDX-License-Identifier: MIT
#include "settings.h"

#include <errno.h>
#include <inttypes.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "include_c"
#include "objects.h"
#include "say.h"

enum { LIST_SIZE = 256 };

struct settings {
  char interfaces[LIST_SIZE];  // "*", or names separated by commas
  uint32_t log_level;
  int32_t console;
};

static const char kInterfaces[] = SETTINGS_NAME "Interfaces";
static const char kLogLevel[] = SETTINGS_NAME "LogLevel";
static const char kConsole[] = SETTINGS_NAME "Console";

static struct settings g_settings;
static void (*g_changed)(void);

static int read_setting(const char* name, const char* type, void* data, unsigned int size) {
  int result = c_cfm_get_value(name, type, data, size);
  if (result != C_RESULT_OK) say(SAY_PROBLEM, "cannot read %s: result %d", name, result);
  return result;
}

static int read_interfaces(char* list) {
  memset(list, 0, LIST_SIZE);  // c_cfm_get_value() never writes the last byte
  int result = read_setting(kInterfaces, "str", list, LIST_SIZE);
  if (result != C_RESULT_OK || strlen(list) < LIST_SIZE - 1) return result;
  say(SAY_PROBLEM, "%s is too long", kInterfaces);
  return C_RESULT_PARAM;
}

// Replaces all settings or none.
static int load_settings(void) {
  struct settings fresh;
  int result = read_interfaces(fresh.interfaces);
  if (result == C_RESULT_OK)
    result = read_setting(kLogLevel, "uint", &fresh.log_level, sizeof fresh.log_level);
  if (result == C_RESULT_OK) result = read_setting(kConsole, "bool", &fresh.console, sizeof fresh.console);
  if (result != C_RESULT_OK) return result;

  g_settings = fresh;
  say_up_to(fresh.log_level < SAY_VALUE ? (enum say_level)fresh.log_level : SAY_VALUE);
  say(SAY_NEWS, "settings: interfaces \"%s\", log level %" PRIu32, fresh.interfaces, fresh.log_level);
  return C_RESULT_OK;
}

static int on_setting_changed(void* user, int id, const char* instance, int operation, const char* leaf) {
  (void)user, (void)id, (void)operation;
  say(SAY_NEWS, "settings: %s%s changed", instance, leaf);
  struct settings before = g_settings;
  int result = load_settings();
  if (strcmp(before.interfaces, g_settings.interfaces) != 0) g_changed();
  return result;
}

int settings_start(void (*changed)(void)) {
  int result = load_settings();
  if (result != C_RESULT_OK) return result;
  g_changed = changed;
  c_cfm_regist_observer(SETTINGS_OBJECT, on_setting_changed, NULL);
  return C_RESULT_OK;
}

void settings_stop(void) {
  c_cfm_unregist_observer(SETTINGS_OBJECT, on_setting_changed);
}

static bool same_name(const char* item, size_t length, const char* name) {
  while (length > 0 && item[length - 1] == ' ') length--;
  return strlen(name) == length && memcmp(item, name, length) == 0;
}

bool settings_watch(const char* name) {
  if (strcmp(g_settings.interfaces, "*") == 0) return true;

  const char* item = g_settings.interfaces;
  while (*item != '\0') {
    item += strspn(item, ", ");
    size_t length = strcspn(item, ",");
    if (length > 0 && same_name(item, length, name)) return true;
    item += length;
  }
  return false;
}

bool settings_console(void) {
  return g_settings.console != 0;
}

static int change_log_level(const char* text) {
  char* end;
  errno = 0;
  unsigned long number = strtoul(text, &end, 10);
  if (errno != 0 || text[0] < '0' || text[0] > '9' || *end != '\0' || number > SAY_VALUE)
    return C_RESULT_PARAM;
  uint32_t level = (uint32_t)number;
  return c_cfm_set_value(kLogLevel, 0, "uint", &level, sizeof level);
}

int settings_change(const char* leaf, const char* text) {
  if (strcmp(leaf, "LogLevel") == 0) return change_log_level(text);
  if (strcmp(leaf, "Interfaces") != 0) return C_RESULT_NOT_FOUND;
  return c_cfm_set_value(kInterfaces, 0, "str", text, (unsigned int)strlen(text) + 1);
}
