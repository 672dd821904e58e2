// SPDX-License-Identifier: MIT
#include "follow.h"

#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include "cpp2c_host.h"
#include "hook.h"
#include "include_c"
#include "objects.h"
#include "owner.h"
#include "records.h"

enum { EVENT_SIZE = IF_NAMESIZE + sizeof " none" + INET6_ADDRSTRLEN };

// The state of an interface in the tree. A deleted instance reads as down, without a name and an address.
struct link_state {
  char name[IF_NAMESIZE];
  char address[INET6_ADDRSTRLEN];
  int32_t up;
};

static int read_leaf(const char* link, const char* leaf, const char* type, void* data, unsigned int size) {
  int result = c_cfm_get_value_v2(link, "", leaf, type, data, size);
  if (result != C_RESULT_OK) {
    c_log_record("address", C_LOG_ERROR, "cannot read %s%s: result %d", link, leaf, result);
  }
  return result;
}

static int read_link(const char* link, struct link_state* state) {
  memset(state, 0, sizeof *state);  // c_cfm_get_value_v2() never writes the last byte of a string
  int result = read_leaf(link, "Name", "str", state->name, sizeof state->name);
  if (result == C_RESULT_OK) {
    result = read_leaf(link, "IpAddress", "ipaddr", state->address, sizeof state->address);
  }
  if (result == C_RESULT_OK) result = read_leaf(link, "Up", "bool", &state->up, sizeof state->up);
  return result;
}

// Both instances of an interface, linkwatch's and this module's, have the same last component.
static int own_instance(const char* link, char instance[NAME_SIZE]) {
  char object[NAME_SIZE];
  int result = c_cfm_get_parent_name(link, object, sizeof object);
  if (result != C_RESULT_OK) return result;
  snprintf(instance, NAME_SIZE, ADDRESS_LINK_NAME "%s", link + strlen(object));
  return C_RESULT_OK;
}

static void tell_change(const struct record* record, const char* previous) {
  const char* address = record->address[0] != '\0' ? record->address : "none";
  char text[EVENT_SIZE];
  snprintf(text, sizeof text, "%s %s", record->name, address);
  owner_count_change(record->instance);
  c_event_notify("address-changed", text);
  hook_run(record, previous);
}

static void update(struct record* record, const struct link_state* state) {
  record->seen = true;
  if (state->name[0] != '\0') records_set_name(record, state->name);
  records_set_up(record, state->up != 0);
  if (strcmp(record->address, state->address) != 0) {
    char previous[INET6_ADDRSTRLEN];
    memcpy(previous, record->address, sizeof previous);
    records_set_address(record, state->address);
    tell_change(record, previous);
  }
  records_remove_if_unused(record);
}

static int follow_link(const char* link) {
  struct link_state state;
  char instance[NAME_SIZE];
  int result = read_link(link, &state);
  if (result == C_RESULT_OK) result = own_instance(link, instance);
  if (result != C_RESULT_OK) return result;

  struct record* record = records_find(instance);
  bool used = state.up != 0 || state.address[0] != '\0';
  if (record == NULL && !used) return C_RESULT_OK;
  if (record == NULL) record = records_make(instance);
  if (record == NULL) {
    c_log_record("address", C_LOG_ERROR, "%s: out of memory, ignored", state.name);
    return C_RESULT_NO_MEMORY;
  }
  update(record, &state);
  return C_RESULT_OK;
}

static int on_link_changed(void* user, int id, const char* instance, int operation, const char* leaf) {
  (void)user, (void)id, (void)operation, (void)leaf;
  return follow_link(instance);
}

// Used for all walks, over the tree and over the records: calls `act` for each instance that `select`
// accepts, or for all instances if `select` is NULL.
static int visit(int id, char* name, void* userdata, c_pass_fn3 select, c_pass_fn4 act, void* arg) {
  if (select != NULL && !select(id, name, userdata)) return 0;
  return act(id, name, userdata, arg);
}

static int forget_seen(int id, char* name, void* userdata, void* arg) {
  (void)id, (void)name, (void)arg;
  struct record* record = userdata;
  record->seen = false;
  return 0;
}

static int follow(int id, char* name, void* userdata, void* count) {
  (void)id, (void)userdata;
  ++*(unsigned*)count;
  return follow_link(name);
}

static int is_unseen(int id, char* name, void* userdata) {
  (void)id, (void)name;
  const struct record* record = userdata;
  return !record->seen;
}

static int give_up(int id, char* name, void* userdata, void* arg) {
  (void)id, (void)name, (void)arg;
  static const struct link_state kGone;
  update(userdata, &kGone);
  return 0;
}

static int drop(int id, char* name, void* userdata, void* arg) {
  (void)id, (void)name, (void)arg;
  records_free(userdata);
  return 0;
}

void follow_refresh(void) {
  unsigned count = 0;
  c_dbc_lookup(ADDRESS_LINK_OBJECT, visit, NULL, forget_seen, NULL);
  int result = c_cfm_lookup_instance(LINK_OBJECT, visit, NULL, follow, &count);
  if (result != C_RESULT_OK) {
    c_log_record("address", C_LOG_ERROR, "cannot walk the interfaces: result %d", result);
    return;
  }
  c_dbc_lookup(ADDRESS_LINK_OBJECT, visit, is_unseen, give_up, NULL);
  c_log_record("address", C_LOG_INFO, "checked %u interfaces", count);
}

void follow_start(void) {
  c_cfm_regist_observer(LINK_OBJECT, on_link_changed, NULL);
}

void follow_stop(void) {
  c_cfm_unregist_observer(LINK_OBJECT, on_link_changed);
  c_dbc_lookup(ADDRESS_LINK_OBJECT, visit, NULL, drop, NULL);
}
