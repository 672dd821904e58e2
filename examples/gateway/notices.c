// SPDX-License-Identifier: MIT
#include "notices.h"

#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stddef.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "cpp2c_host.h"
#include "include_c"
#include "tree.h"

// The loop watches descriptors, not signals, so the signal handler writes to a pipe.
static int g_pipe[2] = {-1, -1};

static void on_signal(int number) {
  int error = errno;
  const unsigned char byte = (unsigned char)number;
  // A full pipe needs no further byte: the loop will read it.
  if (write(g_pipe[1], &byte, 1) < 0) errno = error;
}

static void on_readable(void* user, short events, int fd) {
  (void)user, (void)events;
  unsigned char bytes[64];
  if (read(fd, bytes, sizeof bytes) > 0) c_context_notify_depends(INTERFACES_NOTICE);
}

static int open_pipe(void) {
  if (pipe2(g_pipe, O_CLOEXEC | O_NONBLOCK) == 0) return C_RESULT_OK;
  fprintf(stderr, "gateway: cannot create a pipe: %s\n", strerror(errno));
  return C_RESULT_SYSTEM_CALL;
}

static int catch_signal(void) {
  struct sigaction action = {.sa_handler = on_signal, .sa_flags = SA_RESTART};
  sigemptyset(&action.sa_mask);
  if (sigaction(SIGHUP, &action, NULL) == 0) return C_RESULT_OK;
  fprintf(stderr, "gateway: cannot catch SIGHUP: %s\n", strerror(errno));
  return C_RESULT_SYSTEM_CALL;
}

int notices_start(void) {
  int result = open_pipe();
  if (result != C_RESULT_OK) return result;
  result = c_loop_add_fd(g_pipe[0], C_LOOP_READ, on_readable, NULL);
  if (result == C_RESULT_OK) return catch_signal();
  fprintf(stderr, "gateway: cannot watch the pipe: result %d\n", result);
  return result;
}

void notices_stop(void) {
  if (g_pipe[0] < 0) return;
  signal(SIGHUP, SIG_IGN);
  c_loop_del_fd(g_pipe[0]);
  close(g_pipe[0]);
  close(g_pipe[1]);
  g_pipe[0] = -1;
}
