// SPDX-License-Identifier: MIT
#include "monitor.h"

#include <errno.h>
#include <string.h>
#include <unistd.h>

#include "cpp2c_host.h"
#include "include_c"
#include "links.h"
#include "message.h"
#include "netlink.h"
#include "say.h"
#include "settings.h"

enum {
  BUFFER_SIZE = 32768,     // the kernel sends no larger datagram in a dump
  DATAGRAMS_AT_ONCE = 100  // then the loop serves other descriptors
};

static struct {
  int fd;
  uint32_t port;
  uint32_t sequence;          // of the latest request
  enum netlink_dump running;  // the kernel sends one dump at a time
  bool complete;              // no message of the running dump was lost
  bool refused;               // do not send requests before the next message
  bool wanted[DUMP_ADDRESSES + 1];
} g_monitor = {.fd = -1};

static void begin_dump(enum netlink_dump dump) {
  if (netlink_request(g_monitor.fd, dump, ++g_monitor.sequence) != 0) {
    say(SAY_PROBLEM, "cannot send a request to the kernel: %s", strerror(errno));
    return;  // still wanted: the next message from the kernel triggers another attempt
  }
  g_monitor.running = dump;
  g_monitor.complete = true;
  g_monitor.wanted[dump] = false;
  if (dump == DUMP_LINKS) {
    links_begin();
  } else {
    links_begin_addresses();
  }
}

static void begin_wanted_dump(void) {
  if (g_monitor.running != DUMP_NONE || g_monitor.refused) return;
  if (g_monitor.wanted[DUMP_LINKS]) {
    begin_dump(DUMP_LINKS);
  } else if (g_monitor.wanted[DUMP_ADDRESSES]) {
    begin_dump(DUMP_ADDRESSES);
  }
}

static void take_over(enum netlink_dump dump) {
  if (dump == DUMP_LINKS) {
    links_end();
    return;
  }
  links_end_addresses();
  if (!g_monitor.wanted[DUMP_LINKS] && !g_monitor.wanted[DUMP_ADDRESSES]) {
    say(SAY_NEWS, "in sync with the kernel: %u watched", links_count());
  }
}

static void end_dump(int error) {
  enum netlink_dump dump = g_monitor.running;
  g_monitor.running = DUMP_NONE;
  if (error != 0) {
    say(SAY_PROBLEM, "the kernel aborted a dump: %s", strerror(error));
    g_monitor.refused = true;
    g_monitor.wanted[dump] = true;
  } else if (g_monitor.complete) {
    take_over(dump);
  }
}

static void handle_link(const struct link_state* state) {
  if (!settings_watch(state->name)) {
    links_forget(state->index);
  } else if (links_update(state)) {
    g_monitor.wanted[DUMP_ADDRESSES] = true;
  }
}

// Only a dump shows which address of an interface is the first, so each address change requests a dump.
static void handle_address(const struct message* message, bool answer) {
  if (answer) {
    links_add_address(message->link.index, message->address);
  } else {
    g_monitor.wanted[DUMP_ADDRESSES] = true;
  }
}

static bool is_answer(const struct message* message) {
  return g_monitor.running != DUMP_NONE && message->port == g_monitor.port &&
         message->sequence == g_monitor.sequence;
}

static void repeat_dump(void) {
  g_monitor.complete = false;
  g_monitor.wanted[g_monitor.running] = true;
}

static void handle_message(enum message_kind kind, const struct message* message) {
  bool answer = is_answer(message);
  if (answer && message->interrupted) repeat_dump();
  switch (kind) {
    case MESSAGE_LINK:
      handle_link(&message->link);
      break;
    case MESSAGE_LINK_GONE:
      links_vanish(message->link.index);
      break;
    case MESSAGE_ADDRESS:
    case MESSAGE_ADDRESS_GONE:
      handle_address(message, answer);
      break;
    case MESSAGE_DONE:
      if (answer) end_dump(message->error);
      break;
    case MESSAGE_MALFORMED:
      say(SAY_PROBLEM, "ignored a malformed message");
      g_monitor.complete = false;
      break;
    case MESSAGE_OTHER:
    case MESSAGE_END:
      break;
  }
}

static void want_everything(void) {
  g_monitor.wanted[DUMP_LINKS] = true;
  g_monitor.wanted[DUMP_ADDRESSES] = true;
}

static void handle_loss(int error) {
  g_monitor.complete = false;
  if (error == EMSGSIZE) {
    say(SAY_PROBLEM, "ignored a message that is too long");
    return;
  }
  say(SAY_PROBLEM, "messages from the kernel were lost, reading everything again: %s", strerror(error));
  want_everything();
}

static void read_messages(struct message_reader reader) {
  struct message message;
  enum message_kind kind;
  while ((kind = message_next(&reader, &message)) != MESSAGE_END) handle_message(kind, &message);
}

// Returns false if no datagram is waiting.
static bool receive_datagram(int fd) {
  static unsigned char buffer[BUFFER_SIZE];
  ssize_t size = netlink_receive(fd, buffer, sizeof buffer);
  if (size == 0) return false;
  if (size < 0) {
    handle_loss(errno);
  } else {
    read_messages((struct message_reader){buffer, (size_t)size});
  }
  return true;
}

// Requests a dump only after all waiting datagrams were read: the kernel cannot answer into a full queue, and
// messages older than the dump must not be taken for a part of it.
static void on_readable(void* user, short events, int fd) {
  (void)user, (void)events;
  g_monitor.refused = false;
  for (int i = 0; i < DATAGRAMS_AT_ONCE; i++) {
    if (receive_datagram(fd)) continue;
    begin_wanted_dump();
    return;
  }
}

int monitor_start(void) {
  g_monitor.fd = netlink_open(&g_monitor.port);
  if (g_monitor.fd < 0) {
    say(SAY_PROBLEM, "cannot open the netlink socket: %s", strerror(errno));
    return C_RESULT_SYSTEM_CALL;
  }
  int result = c_loop_add_fd(g_monitor.fd, C_LOOP_READ, on_readable, NULL);
  if (result != C_RESULT_OK) {
    say(SAY_PROBLEM, "cannot watch the netlink socket: result %d", result);
    return result;
  }
  monitor_resync();
  return g_monitor.running != DUMP_NONE ? C_RESULT_OK : C_RESULT_SYSTEM_CALL;
}

void monitor_stop(void) {
  if (g_monitor.fd < 0) return;
  c_loop_del_fd(g_monitor.fd);
  close(g_monitor.fd);
  g_monitor.fd = -1;
  g_monitor.running = DUMP_NONE;
}

void monitor_resync(void) {
  want_everything();
  begin_wanted_dump();
}
