// SPDX-License-Identifier: MIT
// Reads the kernel's routing messages out of a datagram, one at a time.
#ifndef LINKWATCH_MESSAGE_H
#define LINKWATCH_MESSAGE_H

#include <net/if.h>
#include <netinet/in.h>
#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

enum { MAC_TEXT_SIZE = sizeof "00:00:00:00:00:00" };

// What a message says, and which members of struct message it fills in.
enum message_kind {
  MESSAGE_END,           // the datagram is used up
  MESSAGE_LINK,          // an interface as it is now: link
  MESSAGE_LINK_GONE,     // an interface that vanished: link.index
  MESSAGE_ADDRESS,       // an IPv4 address that an interface has: link.index, address
  MESSAGE_ADDRESS_GONE,  // an IPv4 address that an interface no longer has: link.index, address
  MESSAGE_DONE,          // the end of a dump: error
  MESSAGE_OTHER,         // nothing for us
  MESSAGE_MALFORMED      // cannot be understood
};

// What the kernel tells of an interface in one message.
struct link_state {
  int index;
  char name[IFNAMSIZ];
  char mac[MAC_TEXT_SIZE];  // empty for an interface without a six-byte hardware address
  uint32_t mtu;
  bool up;  // switched on, and the link carries data
};

struct message {
  uint32_t port;      // the socket that asked; 0 for what the kernel tells of itself
  uint32_t sequence;  // the request that this answers
  bool interrupted;   // the dump is inconsistent: something changed while it was made
  struct link_state link;
  char address[INET_ADDRSTRLEN];
  int error;  // 0, or an errno value
};

// The unread rest of a datagram. The bytes may have any alignment and stay the caller's.
struct message_reader {
  const unsigned char* bytes;
  size_t size;
};

// Reads the next message, skipping nothing. Only the members that its kind names have a meaning.
enum message_kind message_next(struct message_reader* reader, struct message* message);

#endif
