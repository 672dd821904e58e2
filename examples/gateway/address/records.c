// SPDX-License-Identifier: MIT
#include "records.h"

#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include "cpp2c_host.h"
#include "include_c"

// The instance's name ends with a dot, so the relative path to its leaves is empty.
static void write_leaf(const struct record* record, const char* leaf, const char* type, const void* data,
                       unsigned int size, int option) {
  int result = c_cfm_set_value_v2(record->instance, "", leaf, type, data, size, option);
  if (result != C_RESULT_OK) {
    c_log_record("address", C_LOG_ERROR, "cannot write %s%s: result %d", record->instance, leaf, result);
  }
}

static void write_text(const struct record* record, const char* leaf, const char* type, const char* text) {
  write_leaf(record, leaf, type, text, (unsigned int)strlen(text) + 1, C_CFM_CREATE);
}

static void count_use(struct record* record, bool before, bool now) {
  if (before == now) return;
  record->users = now ? reference_increase(record->instance) : reference_decrease(record->instance);
  const int32_t number = record->users;
  write_leaf(record, "Users", "int", &number, sizeof number, C_CFM_CREATE);
}

struct record* records_find(const char* instance) {
  return c_dbc_get_userdata(ADDRESS_LINK_OBJECT, instance);
}

struct record* records_make(const char* instance) {
  struct record* record = (struct record*)(void*)c_malloc(sizeof *record, __FILE__, __LINE__);
  if (record == NULL) return NULL;
  snprintf(record->instance, sizeof record->instance, "%s", instance);
  c_dbc_add_userdata(ADDRESS_LINK_OBJECT, record->instance, record);
  return record;
}

void records_set_name(struct record* record, const char* name) {
  if (strcmp(record->name, name) == 0) return;
  snprintf(record->name, sizeof record->name, "%s", name);
  write_text(record, "Name", "str", record->name);
}

void records_set_up(struct record* record, bool up) {
  count_use(record, record->up, up);
  record->up = up;
}

void records_set_address(struct record* record, const char* address) {
  count_use(record, record->address[0] != '\0', address[0] != '\0');
  snprintf(record->address, sizeof record->address, "%s", address);
  write_text(record, "Address", "ipaddr", record->address);
}

void records_remove_if_unused(struct record* record) {
  if (record->users > 0) return;
  // Writing any leaf with C_CFM_DELETE deletes its instance; the value is ignored.
  write_leaf(record, "Name", "str", "", sizeof "", C_CFM_DELETE);
  records_free(record);
}

void records_free(struct record* record) {
  while (record->users > 0) record->users = reference_decrease(record->instance);
  c_dbc_db_release(ADDRESS_LINK_OBJECT, record->instance);
  c_free((char*)record);
}
