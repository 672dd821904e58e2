// SPDX-License-Identifier: MIT
#include "links.h"

#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "include_c"
#include "link_config.h"
#include "link_events.h"
#include "say.h"

// This list finds an interface by the kernel's index. The instance-name cache finds it by the instance name,
// which is what observers receive.
static struct link* g_links;

static struct link** place_of(int index) {
  struct link** place = &g_links;
  while (*place != NULL && (*place)->state.index != index) place = &(*place)->next;
  return place;
}

static struct link* append_link(struct link** end, const struct link_state* state) {
  struct link* link = calloc(1, sizeof *link);
  if (link == NULL) {
    say(SAY_PROBLEM, "%s: out of memory, not watched", state->name);
    return NULL;
  }
  link->state.index = state->index;
  snprintf(link->instance, sizeof link->instance, LINK_NAME "%d.", state->index);
  c_dbc_add_userdata(LINK_OBJECT, link->instance, link);
  *end = link;
  return link;
}

static void free_link(struct link** place) {
  struct link* link = *place;
  *place = link->next;
  c_dbc_db_release(LINK_OBJECT, link->instance);
  free(link);
}

static void remove_link(struct link** place, const char* reason) {
  struct link* link = *place;
  say(SAY_NEWS, "link: %s %s", link->state.name, reason);
  link_config_remove(link);
  free_link(place);
}

static void vanish(struct link** place) {
  struct link_state last = (*place)->state;
  remove_link(place, "vanished");
  if (last.up) link_events_notify(last.name, false);
}

static bool same_state(const struct link_state* a, const struct link_state* b) {
  return strcmp(a->name, b->name) == 0 && strcmp(a->mac, b->mac) == 0 && a->mtu == b->mtu && a->up == b->up;
}

static const char* or_none(const char* text) {
  return text[0] != '\0' ? text : "none";
}

static void record_change(struct link* link) {
  const struct link_state* state = &link->state;
  say(SAY_NEWS, "link: %s %s, mac %s, mtu %" PRIu32 ", address %s", state->name, state->up ? "up" : "down",
      or_none(state->mac), state->mtu, or_none(link->address));
  link->changed = time(NULL);
  link_config_write(link);
}

static void update_state(struct link* link, const struct link_state* state) {
  link->seen = true;
  if (same_state(&link->state, state)) return;
  bool turned = link->state.up != state->up;
  link->state = *state;
  record_change(link);
  if (turned) link_events_notify(state->name, state->up);
}

bool links_update(const struct link_state* state) {
  struct link** place = place_of(state->index);
  bool unknown = *place == NULL;
  struct link* link = unknown ? append_link(place, state) : *place;
  if (link != NULL) update_state(link, state);
  return unknown;
}

void links_vanish(int index) {
  struct link** place = place_of(index);
  if (*place != NULL) vanish(place);
}

void links_forget(int index) {
  struct link** place = place_of(index);
  if (*place != NULL) remove_link(place, "is no longer watched");
}

void links_begin(void) {
  for (struct link* link = g_links; link != NULL; link = link->next) link->seen = false;
}

void links_end(void) {
  struct link** place = &g_links;
  while (*place != NULL) {
    if ((*place)->seen) {
      place = &(*place)->next;
    } else {
      vanish(place);
    }
  }
}

static void set_address(struct link* link, const char* address) {
  if (strcmp(link->address, address) == 0) return;
  snprintf(link->address, sizeof link->address, "%s", address);
  record_change(link);
}

void links_begin_addresses(void) {
  for (struct link* link = g_links; link != NULL; link = link->next) link->addressed = false;
}

void links_add_address(int index, const char* address) {
  struct link* link = *place_of(index);
  if (link == NULL || link->addressed) return;
  link->addressed = true;
  set_address(link, address);
}

void links_end_addresses(void) {
  for (struct link* link = g_links; link != NULL; link = link->next) {
    if (!link->addressed) set_address(link, "");
  }
}

unsigned links_count(void) {
  unsigned count = 0;
  for (const struct link* link = g_links; link != NULL; link = link->next) count++;
  return count;
}

void links_free(void) {
  while (g_links != NULL) free_link(&g_links);
}
