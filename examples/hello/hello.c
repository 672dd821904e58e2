// A minimal complete service: each line of standard input becomes an event, and an observer prints it.
#include <signal.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "cpp2c_host.h"
#include "include_c"

static int print_line(void* user, const char* event, const char* data, const char* source) {
  (void)user;
  printf("%s from %s: %s\n", event, source, data);
  return C_RESULT_OK;
}

static void read_line(void* user, short events, int fd) {
  (void)user, (void)events;
  char line[128];
  ssize_t size = read(fd, line, sizeof line - 1);
  if (size <= 0) {
    c_loop_del_fd(fd);
    raise(SIGTERM);  // ends the loop, as Ctrl-C does
    return;
  }
  line[size] = '\0';
  line[strcspn(line, "\n")] = '\0';
  c_event_notify("line", line);
}

int main(int argc, char** argv) {
  if (c_context_init((uintptr_t)argc, (uintptr_t)argv) != C_RESULT_OK) return 1;
  c_event_regist_observer("line", print_line, NULL);
  int result = c_loop_add_fd(STDIN_FILENO, C_LOOP_READ, read_line, NULL);
  if (result == C_RESULT_OK) result = c_context_load();
  if (result == C_RESULT_OK) result = c_loop_run();  // until the input ends or Ctrl-C
  c_context_deinit();
  return result == C_RESULT_OK ? 0 : 1;
}
