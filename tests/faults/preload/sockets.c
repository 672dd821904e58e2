// SPDX-License-Identifier: MIT
// Does not include <sys/socket.h>, which declares these functions with pointers to unions.
#include <stddef.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "fail_call.h"

int socket(int domain, int type, int protocol);
int socketpair(int domain, int type, int protocol, int ends[2]);
int bind(int fd, const void* address, unsigned size);
int listen(int fd, int backlog);
int accept(int fd, void* address, void* size);
int accept4(int fd, void* address, void* size, int flags);
int connect(int fd, const void* address, unsigned size);
ssize_t send(int fd, const void* data, size_t size, int flags);
ssize_t sendto(int fd, const void* data, size_t size, int flags, const void* address, unsigned length);
ssize_t sendmsg(int fd, const void* message, int flags);
ssize_t recv(int fd, void* data, size_t size, int flags);
ssize_t recvfrom(int fd, void* data, size_t size, int flags, void* address, void* length);
ssize_t recvmsg(int fd, void* message, int flags);
int shutdown(int fd, int how);
int getsockopt(int fd, int level, int option, void* value, void* size);
int setsockopt(int fd, int level, int option, const void* value, unsigned size);
int getsockname(int fd, void* address, void* size);
int getpeername(int fd, void* address, void* size);

int socket(int domain, int type, int protocol) {
  return fails(SOCKET) ? -1 : (int)syscall(SYS_socket, domain, type, protocol);
}

int socketpair(int domain, int type, int protocol, int ends[2]) {
  return fails(SOCKETPAIR) ? -1 : (int)syscall(SYS_socketpair, domain, type, protocol, ends);
}

int bind(int fd, const void* address, unsigned size) {
  return fails(BIND) ? -1 : (int)syscall(SYS_bind, fd, address, size);
}

int listen(int fd, int backlog) {
  return fails(LISTEN) ? -1 : (int)syscall(SYS_listen, fd, backlog);
}

int accept(int fd, void* address, void* size) {
  return fails(ACCEPT) ? -1 : (int)syscall(SYS_accept4, fd, address, size, 0);
}

int accept4(int fd, void* address, void* size, int flags) {
  return fails(ACCEPT) ? -1 : (int)syscall(SYS_accept4, fd, address, size, flags);
}

int connect(int fd, const void* address, unsigned size) {
  return fails(CONNECT) ? -1 : (int)syscall(SYS_connect, fd, address, size);
}

ssize_t send(int fd, const void* data, size_t size, int flags) {
  return fails(SEND) ? -1 : syscall(SYS_sendto, fd, data, size, flags, NULL, 0);
}

ssize_t sendto(int fd, const void* data, size_t size, int flags, const void* address, unsigned length) {
  return fails(SEND) ? -1 : syscall(SYS_sendto, fd, data, size, flags, address, length);
}

ssize_t sendmsg(int fd, const void* message, int flags) {
  return fails(SEND) ? -1 : syscall(SYS_sendmsg, fd, message, flags);
}

ssize_t recv(int fd, void* data, size_t size, int flags) {
  return fails(RECV) ? -1 : syscall(SYS_recvfrom, fd, data, size, flags, NULL, NULL);
}

ssize_t recvfrom(int fd, void* data, size_t size, int flags, void* address, void* length) {
  return fails(RECV) ? -1 : syscall(SYS_recvfrom, fd, data, size, flags, address, length);
}

ssize_t recvmsg(int fd, void* message, int flags) {
  return fails(RECV) ? -1 : syscall(SYS_recvmsg, fd, message, flags);
}

int shutdown(int fd, int how) {
  return fails(SHUTDOWN) ? -1 : (int)syscall(SYS_shutdown, fd, how);
}

int getsockopt(int fd, int level, int option, void* value, void* size) {
  return fails(GETSOCKOPT) ? -1 : (int)syscall(SYS_getsockopt, fd, level, option, value, size);
}

int setsockopt(int fd, int level, int option, const void* value, unsigned size) {
  return fails(SETSOCKOPT) ? -1 : (int)syscall(SYS_setsockopt, fd, level, option, value, size);
}

int getsockname(int fd, void* address, void* size) {
  return fails(GETSOCKNAME) ? -1 : (int)syscall(SYS_getsockname, fd, address, size);
}

int getpeername(int fd, void* address, void* size) {
  return fails(GETPEERNAME) ? -1 : (int)syscall(SYS_getpeername, fd, address, size);
}
