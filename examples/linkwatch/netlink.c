// SPDX-License-Identifier: MIT
#include "netlink.h"

#include <errno.h>
#include <linux/rtnetlink.h>
#include <string.h>
#include <sys/socket.h>
#include <unistd.h>

static int bind_and_tell_port(int fd, uint32_t* port) {
  struct sockaddr_nl address = {.nl_family = AF_NETLINK, .nl_groups = RTMGRP_LINK | RTMGRP_IPV4_IFADDR};
  socklen_t size = sizeof address;
  if (bind(fd, (const struct sockaddr*)&address, size) != 0) return -1;
  if (getsockname(fd, (struct sockaddr*)&address, &size) != 0) return -1;
  *port = address.nl_pid;
  return 0;
}

int netlink_open(uint32_t* port) {
  int fd = socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE);
  if (fd < 0) return -1;
  if (bind_and_tell_port(fd, port) == 0) return fd;

  int error = errno;
  close(fd);
  errno = error;
  return -1;
}

int netlink_request(int fd, enum netlink_dump dump, uint32_t sequence) {
  struct {
    struct nlmsghdr head;
    struct rtgenmsg family;
  } request;
  memset(&request, 0, sizeof request);
  request.head.nlmsg_len = sizeof request;
  request.head.nlmsg_type = dump == DUMP_LINKS ? RTM_GETLINK : RTM_GETADDR;
  request.head.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
  request.head.nlmsg_seq = sequence;
  request.family.rtgen_family = dump == DUMP_LINKS ? AF_UNSPEC : AF_INET;

  struct sockaddr_nl kernel = {.nl_family = AF_NETLINK};
  ssize_t sent = sendto(fd, &request, sizeof request, 0, (const struct sockaddr*)&kernel, sizeof kernel);
  return sent == (ssize_t)sizeof request ? 0 : -1;
}

ssize_t netlink_receive(int fd, void* buffer, size_t size) {
  struct sockaddr_nl sender;
  memset(&sender, 0, sizeof sender);
  socklen_t sender_size = sizeof sender;
  ssize_t received = recvfrom(fd, buffer, size, MSG_TRUNC, (struct sockaddr*)&sender, &sender_size);
  if (received < 0) return errno == EAGAIN || errno == EINTR ? 0 : -1;
  if (sender.nl_pid != 0) return 0;  // any process can send to this socket; accept only the kernel's messages
  if ((size_t)received <= size) return received;

  errno = EMSGSIZE;
  return -1;
}
