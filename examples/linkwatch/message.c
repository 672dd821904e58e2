// SPDX-License-Identifier: MIT
#include "message.h"

#include <arpa/inet.h>
#include <limits.h>
#include <linux/if_addr.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>
#include <stdio.h>
#include <string.h>

// A range of bytes in the datagram. Words are copied before use, because some devices fault on unaligned
// access.
struct bytes {
  const unsigned char* start;
  size_t size;
};

struct attribute {
  unsigned type;
  struct bytes value;
};

enum attribute_result { ATTRIBUTE_FOUND, ATTRIBUTES_END, ATTRIBUTE_MALFORMED };

static size_t min_size(size_t a, size_t b) {
  return a < b ? a : b;
}

// Copies the first `size` bytes to `to` and removes them and their padding from `from`.
static bool take(struct bytes* from, void* to, size_t size) {
  if (from->size < size) return false;
  memcpy(to, from->start, size);
  size_t padded = min_size(NLMSG_ALIGN(size), from->size);
  from->start += padded;
  from->size -= padded;
  return true;
}

static enum attribute_result next_attribute(struct bytes* rest, struct attribute* attribute) {
  if (rest->size == 0) return ATTRIBUTES_END;
  struct rtattr head;
  if (rest->size < sizeof head) return ATTRIBUTE_MALFORMED;
  memcpy(&head, rest->start, sizeof head);
  if (head.rta_len < sizeof head || head.rta_len > rest->size) return ATTRIBUTE_MALFORMED;

  attribute->type = head.rta_type & (unsigned)NLA_TYPE_MASK;
  attribute->value = (struct bytes){rest->start + sizeof head, head.rta_len - sizeof head};
  size_t padded = min_size(RTA_ALIGN((size_t)head.rta_len), rest->size);
  rest->start += padded;
  rest->size -= padded;
  return ATTRIBUTE_FOUND;
}

static bool copy_name(char* name, struct bytes value) {
  if (value.size == 0 || value.size > IFNAMSIZ) return false;
  if (value.start[0] == '\0' || memchr(value.start, '\0', value.size) == NULL) return false;
  memcpy(name, value.start, value.size);
  return true;
}

static void format_mac(char* text, struct bytes value) {
  const unsigned char* b = value.start;
  if (value.size != 6) return;
  snprintf(text, MAC_TEXT_SIZE, "%02x:%02x:%02x:%02x:%02x:%02x", b[0], b[1], b[2], b[3], b[4], b[5]);
}

static bool read_link_attribute(struct link_state* link, struct attribute attribute) {
  switch (attribute.type) {
    case IFLA_IFNAME:
      return copy_name(link->name, attribute.value);
    case IFLA_MTU:
      return take(&attribute.value, &link->mtu, sizeof link->mtu);
    case IFLA_ADDRESS:
      format_mac(link->mac, attribute.value);
      return true;
    default:
      return true;
  }
}

static enum message_kind read_link(struct bytes rest, enum message_kind kind, struct link_state* link) {
  struct ifinfomsg info;
  if (!take(&rest, &info, sizeof info) || info.ifi_index <= 0) return MESSAGE_MALFORMED;
  // Bridges send the same messages for their ports; a port that leaves its bridge has not vanished.
  if (info.ifi_family != AF_UNSPEC) return MESSAGE_OTHER;

  const unsigned up = IFF_UP | IFF_RUNNING;
  link->index = info.ifi_index;
  link->up = (info.ifi_flags & up) == up;
  struct attribute attribute;
  enum attribute_result result;
  while ((result = next_attribute(&rest, &attribute)) == ATTRIBUTE_FOUND) {
    if (!read_link_attribute(link, attribute)) return MESSAGE_MALFORMED;
  }
  if (result == ATTRIBUTE_MALFORMED) return MESSAGE_MALFORMED;
  // Wireless drivers send link messages with only their own attributes and without a name.
  return kind == MESSAGE_LINK && link->name[0] == '\0' ? MESSAGE_OTHER : kind;
}

static enum message_kind read_address(struct bytes rest, enum message_kind kind, struct message* message) {
  struct ifaddrmsg info;
  if (!take(&rest, &info, sizeof info)) return MESSAGE_MALFORMED;
  if (info.ifa_family != AF_INET) return MESSAGE_OTHER;
  if (info.ifa_index == 0 || info.ifa_index > INT32_MAX) return MESSAGE_MALFORMED;

  message->link.index = (int)info.ifa_index;
  struct attribute attribute;
  enum attribute_result result;
  while ((result = next_attribute(&rest, &attribute)) == ATTRIBUTE_FOUND) {
    // On a point-to-point link, IFA_ADDRESS is the peer's address; IFA_LOCAL is always the own address.
    if (attribute.type != IFA_LOCAL) continue;
    struct in_addr local;
    if (!take(&attribute.value, &local, sizeof local)) return MESSAGE_MALFORMED;
    if (inet_ntop(AF_INET, &local, message->address, sizeof message->address) == NULL)
      return MESSAGE_MALFORMED;
  }
  if (result == ATTRIBUTE_MALFORMED || message->address[0] == '\0') return MESSAGE_MALFORMED;
  return kind;
}

// A dump ends with NLMSG_DONE or NLMSG_ERROR; both begin with 0 or a negative errno value.
static enum message_kind read_end(struct bytes rest, struct message* message) {
  int error;
  if (!take(&rest, &error, sizeof error) || error > 0 || error == INT_MIN) return MESSAGE_MALFORMED;
  message->error = -error;
  return MESSAGE_DONE;
}

static enum message_kind read_payload(unsigned type, struct bytes payload, struct message* message) {
  switch (type) {
    case RTM_NEWLINK:
      return read_link(payload, MESSAGE_LINK, &message->link);
    case RTM_DELLINK:
      return read_link(payload, MESSAGE_LINK_GONE, &message->link);
    case RTM_NEWADDR:
      return read_address(payload, MESSAGE_ADDRESS, message);
    case RTM_DELADDR:
      return read_address(payload, MESSAGE_ADDRESS_GONE, message);
    case NLMSG_DONE:
    case NLMSG_ERROR:
      return read_end(payload, message);
    default:
      return MESSAGE_OTHER;
  }
}

enum message_kind message_next(struct message_reader* reader, struct message* message) {
  memset(message, 0, sizeof *message);
  if (reader->size == 0) return MESSAGE_END;

  struct nlmsghdr head;
  size_t size = reader->size;
  if (size >= sizeof head) memcpy(&head, reader->bytes, sizeof head);
  if (size < sizeof head || head.nlmsg_len < sizeof head || head.nlmsg_len > size) {
    reader->size = 0;  // the start of the next message is unknown
    return MESSAGE_MALFORMED;
  }
  struct bytes payload = {reader->bytes + sizeof head, head.nlmsg_len - sizeof head};
  size_t padded = min_size(NLMSG_ALIGN((size_t)head.nlmsg_len), size);
  reader->bytes += padded;
  reader->size -= padded;

  message->port = head.nlmsg_pid;
  message->sequence = head.nlmsg_seq;
  message->interrupted = (head.nlmsg_flags & NLM_F_DUMP_INTR) != 0;
  return read_payload(head.nlmsg_type, payload, message);
}
