// SPDX-License-Identifier: MIT
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include "console.h"
#include "include_c"
#include "linkwatch.h"
#include "say.h"
#include "settings.h"

// A line is the name of a setting, a space and its new value.
static void obey(char* line) {
  char* value = strchr(line, ' ');
  if (value == NULL) {
    say(SAY_PROBLEM, "console: \"%s\": expected NAME VALUE", line);
    return;
  }
  *value++ = '\0';
  int result = settings_change(line, value);
  if (result != C_RESULT_OK)
    say(SAY_PROBLEM, "console: cannot set %s to \"%s\": result %d", line, value, result);
}

static int start(void) {
  int result = linkwatch_start();
  return result == C_RESULT_OK && settings_console() ? console_start(obey) : result;
}

static int run(void) {
  int result = c_context_load();
  if (result == C_RESULT_OK) result = c_loop_run();  // until SIGINT or SIGTERM
  return result;
}

int main(int argc, char** argv) {
  int result = c_context_init((uintptr_t)argc, (uintptr_t)argv);
  if (result == C_RESULT_OK) result = start();
  if (result == C_RESULT_OK) result = run();
  console_stop();
  linkwatch_stop();
  c_context_deinit();
  if (result != C_RESULT_OK) fprintf(stderr, "linkwatch: ended with result %d\n", result);
  return result == C_RESULT_OK ? 0 : 1;
}
