// SPDX-License-Identifier: MIT
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/syscall.h>
#include <sys/timerfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include "fail_call.h"

int epoll_create(int size) {
  return fails(EPOLL_CREATE) ? -1 : (int)syscall(SYS_epoll_create, size);
}

int epoll_create1(int flags) {
  return fails(EPOLL_CREATE) ? -1 : (int)syscall(SYS_epoll_create1, flags);
}

// Only adding a descriptor needs memory.
int epoll_ctl(int epoll, int operation, int fd, struct epoll_event* event) {
  return operation == EPOLL_CTL_ADD && fails(EPOLL_CTL)
             ? -1
             : (int)syscall(SYS_epoll_ctl, epoll, operation, fd, event);
}

int epoll_wait(int epoll, struct epoll_event* events, int count, int timeout) {
  return fails(EPOLL_WAIT) ? -1 : (int)syscall(SYS_epoll_wait, epoll, events, count, timeout);
}

int eventfd(unsigned int count, int flags) {
  return fails(EVENTFD) ? -1 : (int)syscall(SYS_eventfd2, count, flags);
}

int timerfd_create(int clock, int flags) {
  return fails(TIMERFD_CREATE) ? -1 : (int)syscall(SYS_timerfd_create, clock, flags);
}

int timerfd_settime(int fd, int flags, const struct itimerspec* time, struct itimerspec* before) {
  return fails(TIMERFD_SETTIME) ? -1 : (int)syscall(SYS_timerfd_settime, fd, flags, time, before);
}

int pipe(int ends[2]) {
  return fails(PIPE) ? -1 : (int)syscall(SYS_pipe2, ends, 0);
}

int pipe2(int ends[2], int flags) {
  return fails(PIPE) ? -1 : (int)syscall(SYS_pipe2, ends, flags);
}

int poll(struct pollfd* fds, nfds_t count, int timeout) {
  return fails(POLL) ? -1 : (int)syscall(SYS_poll, fds, count, timeout);
}

pid_t fork(void) {
  pid_t (*function)(void) = NULL;
  *(void**)&function = dlsym(RTLD_NEXT, "fork");
  return fails(FORK) ? -1 : function();
}

int posix_spawn(pid_t* restrict process, const char* restrict path,
                const posix_spawn_file_actions_t* restrict actions,
                const posix_spawnattr_t* restrict attributes, char* const arguments[restrict],
                char* const environment[restrict]) {
  int (*function)(pid_t*, const char*, const posix_spawn_file_actions_t*, const posix_spawnattr_t*,
                  char* const[], char* const[]) = NULL;
  *(void**)&function = dlsym(RTLD_NEXT, "posix_spawn");
  if (fails(SPAWN)) return errno;
  return function(process, path, actions, attributes, arguments, environment);
}

pid_t waitpid(pid_t process, int* status, int options) {
  return fails(WAITPID) ? -1 : (pid_t)syscall(SYS_wait4, process, status, options, NULL);
}

int sigaction(int number, const struct sigaction* restrict action, struct sigaction* restrict before) {
  int (*function)(int, const struct sigaction*, struct sigaction*) = NULL;
  *(void**)&function = dlsym(RTLD_NEXT, "sigaction");
  return fails(SIGNAL) ? -1 : function(number, action, before);
}
