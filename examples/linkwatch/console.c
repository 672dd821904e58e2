// SPDX-License-Identifier: MIT
#include "console.h"

#include <errno.h>
#include <stdbool.h>
#include <string.h>
#include <unistd.h>

#include "cpp2c_host.h"
#include "include_c"
#include "say.h"

static struct {
  char text[512];  // the incomplete line received so far
  size_t length;
  void (*obey)(char* line);
  bool watching;
} g_console;

static void obey_complete_lines(void) {
  char* line = g_console.text;
  char* end = line + g_console.length;
  char* line_end;
  while ((line_end = memchr(line, '\n', (size_t)(end - line))) != NULL) {
    *line_end = '\0';
    g_console.obey(line);
    line = line_end + 1;
  }
  g_console.length = (size_t)(end - line);
  memmove(g_console.text, line, g_console.length);
}

// A single read of a ready descriptor does not block. O_NONBLOCK is not set, because it would also affect the
// processes that share the descriptor.
static void on_readable(void* user, short events, int fd) {
  (void)user, (void)events;
  ssize_t size = read(fd, g_console.text + g_console.length, sizeof g_console.text - g_console.length);
  if (size < 0 && errno == EINTR) return;
  if (size <= 0) {
    console_stop();
    return;
  }
  g_console.length += (size_t)size;
  obey_complete_lines();
  if (g_console.length < sizeof g_console.text) return;
  say(SAY_PROBLEM, "console: line too long; the console is closed");
  console_stop();
}

int console_start(void (*obey)(char* line)) {
  g_console.obey = obey;
  int result = c_loop_add_fd(STDIN_FILENO, C_LOOP_READ, on_readable, NULL);
  if (result != C_RESULT_OK) say(SAY_PROBLEM, "cannot watch standard input: result %d", result);
  g_console.watching = result == C_RESULT_OK;
  return result;
}

void console_stop(void) {
  if (!g_console.watching) return;
  c_loop_del_fd(STDIN_FILENO);
  g_console.watching = false;
}
