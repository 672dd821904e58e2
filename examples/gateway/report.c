// SPDX-License-Identifier: MIT
// Reads the output of gateway from standard input, counts the events and prints one line for each interface,
// in the order of their names. Needs no context: the instance-name cache works without one.
#include <net/if.h>
#include <stdio.h>
#include <string.h>

#include "events.h"
#include "include_c"

enum {
  INTERFACES = 1,  // number of the table in the cache
  LINE_SIZE = 256,
  NO_EVENT = EVENT_COUNT
};

struct tally {
  unsigned counts[EVENT_COUNT];
};

static size_t find_event(const char* name) {
  size_t event = 0;
  while (event < EVENT_COUNT && strcmp(kEvents[event], name) != 0) event++;
  return event;
}

static struct tally* tally_of(const char* interface) {
  struct tally* tally = c_dbc_get_userdata(INTERFACES, interface);
  if (tally != NULL) return tally;
  tally = (struct tally*)(void*)c_malloc(sizeof *tally, __FILE__, __LINE__);
  if (tally != NULL) c_dbc_add_userdata(INTERFACES, interface, tally);
  return tally;
}

static int count(const char* line) {
  char event[32];
  char interface[IF_NAMESIZE];
  if (sscanf(line, "event: %31s %15s", event, interface) != 2) return C_RESULT_OK;
  size_t number = find_event(event);
  if (number == NO_EVENT) return C_RESULT_OK;

  struct tally* tally = tally_of(interface);
  if (tally == NULL) return C_RESULT_NO_MEMORY;
  tally->counts[number]++;
  return C_RESULT_OK;
}

static int count_lines(FILE* input) {
  char line[LINE_SIZE];
  int result = C_RESULT_OK;
  while (result == C_RESULT_OK && fgets(line, sizeof line, input) != NULL) result = count(line);
  return ferror(input) ? C_RESULT_SYSTEM_CALL : result;
}

static int print(int db, char* interface, void* userdata, c_pass_fn3 fn3, c_pass_fn4 fn4, void* arg) {
  (void)db, (void)fn3, (void)fn4, (void)arg;
  const struct tally* tally = userdata;
  printf("%s:", interface);
  for (size_t event = 0; event < EVENT_COUNT; event++) {
    if (tally->counts[event] > 0) printf(" %s %u", kEvents[event], tally->counts[event]);
  }
  printf("\n");
  return 0;
}

static int free_tally(int db, char* interface, void* userdata, c_pass_fn3 fn3, c_pass_fn4 fn4, void* arg) {
  (void)db, (void)interface, (void)fn3, (void)fn4, (void)arg;
  c_free(userdata);
  return 0;
}

int main(void) {
  c_dbc_create();  // otherwise c_context_init() creates the cache
  int result = count_lines(stdin);
  c_dbc_lookup(INTERFACES, print, NULL, NULL, NULL);
  c_dbc_lookup(INTERFACES, free_tally, NULL, NULL, NULL);
  c_dbc_db_destory();
  if (result != C_RESULT_OK) fprintf(stderr, "gateway-report: ended with result %d\n", result);
  return result == C_RESULT_OK ? 0 : 1;
}
