// SPDX-License-Identifier: MIT
#include "session_client.h"

#include <stdio.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>

#include "cpp2c_host.h"
#include "include_c"
#include "session.h"

typedef struct request {
  const char* line;
  const char* body;
} request_t;

// A stream stays open until the next request.
static const request_t kRequests[] = {
    {"GET /tree", ""},
    {"GET /leaf?name=Device.Session.Computed", ""},
    {"PUT /leaf",
     "{\"name\": \"Device.Session.Text\", \"value\": \"a text that is too long for a short string\"}"},
    {"PUT /leaf", "{\"name\": \"Device.Session.Counter\", \"value\": \"not a number\"}"},
    {"PUT /leaf", "{\"name\": [[[[{\"a\": [1, 2, \"three\"]}]]]], \"value\": {\"b\": {\"c\": []}}}"},
    {"PUT /leaf", "{\"name\": "},
    {"GET /objects", ""},
    {"GET /instances?object=2", ""},
    {"POST /instances", "{\"name\": \"Device.Ports.from_the_client.\"}"},
    {"DELETE /instances?name=Device.Ports.from_the_client.", ""},
    {"PUT /attribute", "{\"object\": \"1\", \"value\": 5}"},
    {"GET /attribute?object=1", ""},
    {"GET /changes?name=Device.", ""},
    {"POST /events", "{\"event\": \"session.event\", \"data\": \"from the client of the session\"}"},
    {"GET /events", ""},
    {"GET /log", ""},
    {"GET /registrations", ""},
    {"GET /statistics", ""},
    {"GET /trace", ""},
    {"GET /modules", ""},
    {"POST /save", ""},
    {"GET /nowhere", ""},
};

static struct sockaddr_un g_address = {.sun_family = AF_UNIX};
static int g_connection = -1;

void client_start(const char* control) {
  strncpy(g_address.sun_path, control, sizeof g_address.sun_path - 1);
}

// Reports the status line of the reply.
static void reply(void* user, short events, int fd) {
  (void)user, (void)events;
  char data[65536];
  const long size = syscall(SYS_read, fd, data, sizeof data - 1);
  if (size <= 0) {
    c_loop_del_fd(fd);
    return;
  }
  data[size] = '\0';
  if (strncmp(data, "HTTP", 4) != 0) return;
  data[strcspn(data, "\r\n")] = '\0';
  session_report("reply", data);
}

static void disconnect(void) {
  if (g_connection < 0) return;
  c_loop_del_fd(g_connection);
  syscall(SYS_close, g_connection);
  g_connection = -1;
}

static void send_request(const request_t* request) {
  char text[1024];
  const int size = snprintf(text, sizeof text,
                            "%s HTTP/1.1\r\nHost: h\r\nConnection: close\r\nContent-Length: %zu\r\n\r\n%s",
                            request->line, strlen(request->body), request->body);
  g_connection = (int)syscall(SYS_socket, AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (syscall(SYS_connect, g_connection, &g_address, sizeof g_address) != 0) {
    session_report("connect", "failed");
  } else if (syscall(SYS_write, g_connection, text, size) == size) {
    const int added = c_loop_add_fd(g_connection, C_LOOP_READ, reply, NULL);
    if (added != C_RESULT_OK) session_report_number("watch_connection", added);
  }
}

int client_next(void) {
  static unsigned long next;
  disconnect();
  if (next == sizeof kRequests / sizeof kRequests[0]) return 0;
  session_report("request", kRequests[next].line);
  send_request(&kRequests[next++]);
  return 1;
}
