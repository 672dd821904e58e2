// SPDX-License-Identifier: MIT
// The main program of the product. Its modules, listed in the configuration file, do the work.
#include <stdint.h>
#include <stdio.h>

#include "commands.h"
#include "console.h"
#include "debug.h"
#include "include_c"
#include "journal.h"
#include "lifecycle.h"
#include "notices.h"
#include "tree.h"

static int start_console(void) {
  int32_t wanted = 0;
  int result = c_cfm_get_value(GATEWAY_NAME "Console", "bool", &wanted, sizeof wanted);
  return result == C_RESULT_OK && wanted ? console_start(commands_obey) : result;
}

static int start(void) {
  journal_start();
  int result = lifecycle_follow();
  if (result == C_RESULT_OK) result = debug_start();
  if (result == C_RESULT_OK) result = notices_start();
  if (result == C_RESULT_OK) result = start_console();
  return result;
}

static int run(void) {
  int result = c_context_load();
  if (result == C_RESULT_OK) result = c_loop_run();  // until SIGINT or SIGTERM
  return result;
}

static void stop(void) {
  console_stop();
  notices_stop();
  debug_stop();
  journal_stop();
}

int main(int argc, char** argv) {
  setvbuf(stdout, NULL, _IOLBF, 0);  // print lines at once, in order with those of the log
  int result = c_context_init((uintptr_t)argc, (uintptr_t)argv);
  if (result == C_RESULT_OK) result = start();
  if (result == C_RESULT_OK) result = run();
  stop();
  c_context_deinit();
  if (result != C_RESULT_OK) fprintf(stderr, "gateway: ended with result %d\n", result);
  return result == C_RESULT_OK ? 0 : 1;
}
