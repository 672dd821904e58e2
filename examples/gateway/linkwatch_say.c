// SPDX-License-Identifier: MIT
// The output of linkwatch as a module: the program prints it, the module writes it to the log.
#include <stdarg.h>
#include <stdio.h>

#include "cpp2c_host.h"
#include "include_c"
#include "say.h"

enum { LINE_SIZE = 128 };  // longer than a log record

static enum say_level g_limit = SAY_NEWS;

void say_up_to(enum say_level level) {
  g_limit = level;
}

void say(enum say_level level, const char* format, ...) {
  if (level > g_limit) return;

  char line[LINE_SIZE];
  va_list arguments;
  va_start(arguments, format);
  vsnprintf(line, sizeof line, format, arguments);
  va_end(arguments);
  c_log_record("linkwatch", level == SAY_PROBLEM ? C_LOG_ERROR : C_LOG_INFO, "%s", line);
}
