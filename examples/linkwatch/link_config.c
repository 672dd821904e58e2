// SPDX-License-Identifier: MIT
#include "link_config.h"

#include <inttypes.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <time.h>

#include "cpp2c_host.h"
#include "include_c"
#include "say.h"

enum { TIME_TEXT_SIZE = sizeof "YYYY-MM-DDThh:mm:ssZ" };

static const char kName[] = "Name";
static const char kMacAddress[] = "MacAddress";
static const char kIpAddress[] = "IpAddress";
static const char kMtu[] = "Mtu";
static const char kUp[] = "Up";
static const char kLastChange[] = "LastChange";

static const struct leaf {
  const char* name;
  const char* type;
} kLeaves[] = {{kName, "str"}, {kMacAddress, "macaddr"}, {kIpAddress, "ipaddr"}, {kMtu, "uint"},
               {kUp, "bool"},  {kLastChange, "datetime"}};

static const char* type_of(const char* leaf) {
  for (size_t i = 0; i < sizeof kLeaves / sizeof kLeaves[0]; i++) {
    if (strcmp(kLeaves[i].name, leaf) == 0) return kLeaves[i].type;
  }
  return "";
}

static void full_name(char* text, size_t size, const char* instance, const char* leaf) {
  snprintf(text, size, "%s%s", instance, leaf);
}

static void write_value(const char* instance, const char* leaf, int option, const void* data,
                        unsigned int size) {
  char name[FULL_NAME_SIZE];
  full_name(name, sizeof name, instance, leaf);
  int result = c_cfm_set_value(name, option, type_of(leaf), data, size);
  if (result != C_RESULT_OK) say(SAY_PROBLEM, "cannot write %s: result %d", name, result);
}

static void write_text(const char* instance, const char* leaf, const char* text) {
  write_value(instance, leaf, C_CFM_CREATE, text, (unsigned int)strlen(text) + 1);
}

static void format_time(char* text, time_t time) {
  struct tm utc;
  size_t length = 0;
  if (gmtime_r(&time, &utc) != NULL) length = strftime(text, TIME_TEXT_SIZE, "%Y-%m-%dT%H:%M:%SZ", &utc);
  if (length == 0) text[0] = '\0';
}

void link_config_write(const struct link* link) {
  char changed[TIME_TEXT_SIZE];
  format_time(changed, link->changed);
  int32_t up = link->state.up;

  write_text(link->instance, kName, link->state.name);
  write_text(link->instance, kMacAddress, link->state.mac);
  write_text(link->instance, kIpAddress, link->address);
  write_value(link->instance, kMtu, C_CFM_CREATE, &link->state.mtu, sizeof link->state.mtu);
  write_value(link->instance, kUp, C_CFM_CREATE, &up, sizeof up);
  write_text(link->instance, kLastChange, changed);
}

// Writing any leaf with C_CFM_DELETE deletes its instance; the value is ignored.
void link_config_remove(const struct link* link) {
  const int32_t ignored = 0;
  write_value(link->instance, kUp, C_CFM_DELETE, &ignored, sizeof ignored);
}

static int read_number(const char* name, const char* type, char* text, unsigned int size) {
  uint32_t number = 0;
  int result = c_cfm_get_value(name, type, &number, sizeof number);
  snprintf(text, size, "%" PRIu32, number);
  return result;
}

static int read_value(const char* name, const char* type, char* text, unsigned int size) {
  if (strcmp(type, "uint") == 0 || strcmp(type, "bool") == 0) return read_number(name, type, text, size);
  memset(text, 0, size);  // c_cfm_get_value() never writes the last byte
  return c_cfm_get_value(name, type, text, size);
}

static int say_value(const struct link* link, const char* instance, const char* leaf) {
  char name[FULL_NAME_SIZE];
  char text[FULL_NAME_SIZE];
  full_name(name, sizeof name, instance, leaf);
  int result = read_value(name, type_of(leaf), text, sizeof text);
  if (result != C_RESULT_OK) {
    say(SAY_PROBLEM, "cannot read %s: result %d", name, result);
  } else {
    say(SAY_VALUE, "tree: %s = %s (%s)", name, text, link != NULL ? link->state.name : "unknown");
  }
  return result;
}

// Reads the changed value back and finds the interface of the instance.
static int on_link_object_changed(void* user, int id, const char* instance, int operation, const char* leaf) {
  (void)user;
  if (operation == C_CFM_CHANGED) return say_value(c_dbc_get_userdata(id, instance), instance, leaf);
  say(SAY_VALUE, "tree: %s was %s", instance, operation == C_CFM_ADDED ? "added" : "deleted");
  return C_RESULT_OK;
}

void link_config_start(void) {
  c_cfm_regist_observer(LINK_OBJECT, on_link_object_changed, NULL);
}

void link_config_stop(void) {
  c_cfm_unregist_observer(LINK_OBJECT, on_link_object_changed);
}
