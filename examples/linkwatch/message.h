// SPDX-License-Identifier: MIT
// Parses the kernel's routing messages in a datagram, one at a time.
#ifndef LINKWATCH_MESSAGE_H
#define LINKWATCH_MESSAGE_H

#include <net/if.h>
#include <netinet/in.h>
#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

enum { MAC_TEXT_SIZE = sizeof "00:00:00:00:00:00" };

// The kinds of messages, and the members of struct message that each kind sets.
enum message_kind {
  MESSAGE_END,           // end of the datagram
  MESSAGE_LINK,          // the current state of an interface: link
  MESSAGE_LINK_GONE,     // an interface that vanished: link.index
  MESSAGE_ADDRESS,       // an IPv4 address of an interface: link.index, address
  MESSAGE_ADDRESS_GONE,  // a removed IPv4 address of an interface: link.index, address
  MESSAGE_DONE,          // the end of a dump: error
  MESSAGE_OTHER,         // not relevant
  MESSAGE_MALFORMED      // not a valid message
};

// The state of an interface as given in one message.
struct link_state {
  int index;
  char name[IFNAMSIZ];
  char mac[MAC_TEXT_SIZE];  // empty for an interface without a six-byte hardware address
  uint32_t mtu;
  bool up;  // enabled and with a carrier
};

struct message {
  uint32_t port;      // the requesting socket; 0 for a notification
  uint32_t sequence;  // of the request that this message answers
  bool interrupted;   // the dump is inconsistent: something changed meanwhile
  struct link_state link;
  char address[INET_ADDRSTRLEN];
  int error;  // 0, or an errno value
};

// The unread rest of a datagram. The bytes may have any alignment; the caller owns them.
struct message_reader {
  const unsigned char* bytes;
  size_t size;
};

// Reads the next message of any kind. Only the members that belong to its kind are valid.
enum message_kind message_next(struct message_reader* reader, struct message* message);

#endif
