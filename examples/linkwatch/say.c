// SPDX-License-Identifier: MIT
#include "say.h"

#include <stdarg.h>
#include <stdio.h>

static enum say_level g_limit = SAY_NEWS;

void say_up_to(enum say_level level) {
  g_limit = level;
}

void say(enum say_level level, const char* format, ...) {
  if (level > g_limit) return;

  va_list arguments;
  va_start(arguments, format);
  fputs(level == SAY_PROBLEM ? "problem: " : "", stdout);
  vprintf(format, arguments);
  fputc('\n', stdout);
  fflush(stdout);
  va_end(arguments);
}
