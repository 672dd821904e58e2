// SPDX-License-Identifier: MIT
#define _GNU_SOURCE
#include "fail_call.h"

#include <dlfcn.h>
#include <errno.h>
#include <execinfo.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/syscall.h>
#include <unistd.h>

static const char* const kNames[CALL_COUNT] = {
    "malloc",     "open",       "fopen",       "read",           "write",
    "pread",      "pwrite",     "readv",       "writev",         "sendfile",
    "fsync",      "ftruncate",  "mmap",        "mremap",         "munmap",
    "stat",       "fstat",      "lstat",       "fcntl",          "ioctl",
    "lseek",      "close",      "unlink",      "rename",         "mkdir",
    "chmod",      "fchmod",     "fchown",      "access",         "getcwd",
    "readlink",   "socket",     "socketpair",  "bind",           "listen",
    "accept",     "connect",    "send",        "recv",           "shutdown",
    "getsockopt", "setsockopt", "getsockname", "getpeername",    "epoll_create",
    "epoll_ctl",  "epoll_wait", "eventfd",     "timerfd_create", "timerfd_settime",
    "pipe",       "poll",       "fork",        "posix_spawn",    "waitpid",
    "sigaction"};

static unsigned long g_counts[CALL_COUNT];
static call_t g_failing = CALL_COUNT;  // none
static unsigned long g_failing_count;
static int g_failing_errno;
static int g_main_called;
static char g_counts_file[4096];

__attribute__((constructor)) static void read_environment(void) {
  const char* counts = getenv("FAIL_COUNTS");
  if (counts != NULL) snprintf(g_counts_file, sizeof g_counts_file, "%s", counts);
  const char* failing = getenv("FAIL_CALL");
  char name[32] = "";
  if (failing != NULL && sscanf(failing, "%31[^:]:%lu:%d", name, &g_failing_count, &g_failing_errno) == 3) {
    for (int i = 0; i < CALL_COUNT; i++) {
      if (strcmp(name, kNames[i]) == 0) g_failing = (call_t)i;
    }
  }
  unsetenv("LD_PRELOAD");
  unsetenv("FAIL_CALL");
  unsetenv("FAIL_COUNTS");
}

typedef int (*main_function)(int, char**, char**);

static main_function g_main;

static int counted_main(int argc, char** argv, char** environment) {
  memset(g_counts, 0, sizeof g_counts);
  g_main_called = 1;
  return g_main(argc, argv, environment);
}

int start_main(main_function, int, char**, void (*)(void), void (*)(void), void (*)(void),
               void*) __asm__("__libc_start_main");

// The C library's function that calls main().
int start_main(main_function function, int argc, char** argv, void (*init)(void), void (*fini)(void),
               void (*rtld_fini)(void), void* stack_end) {
  int (*next)(main_function, int, char**, void (*)(void), void (*)(void), void (*)(void), void*) = NULL;
  *(void**)&next = dlsym(RTLD_NEXT, "__libc_start_main");
  g_main = function;
  return next(counted_main, argc, argv, init, fini, rtld_fini, stack_end);
}

static void append(const char* text, size_t length) {
  if (g_counts_file[0] == '\0') return;
  const int flags = O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC;
  const int file = (int)syscall(SYS_openat, AT_FDCWD, g_counts_file, flags, 0600);
  if (file < 0 || syscall(SYS_write, file, text, length) != (long)length) abort();
  syscall(SYS_close, file);
}

__attribute__((destructor)) static void write_counts(void) {
  unsigned long counts[CALL_COUNT];
  memcpy(counts, g_counts, sizeof counts);
  char text[64 * CALL_COUNT];
  size_t length = 0;
  for (int i = 0; i < CALL_COUNT; i++) {
    if (counts[i] == 0) continue;
    length += (size_t)snprintf(text + length, sizeof text - length, "%s %lu\n", kNames[i], counts[i]);
  }
  append(text, length);
}

static int is_library(const char* file, const char* name) {
  const char* slash = strrchr(file, '/');
  return strncmp(slash != NULL ? slash + 1 : file, name, strlen(name)) == 0;
}

// The innermost library on the stack other than this one and those of the languages.
static void write_caller(void) {
  void* frames[64];
  const int count = backtrace(frames, sizeof frames / sizeof frames[0]);
  for (int i = 0; i < count; i++) {
    Dl_info info;
    if (dladdr(frames[i], &info) == 0 || is_library(info.dli_fname, "libfail_call") ||
        is_library(info.dli_fname, "libc.so") || is_library(info.dli_fname, "libstdc++")) {
      continue;
    }
    char text[4096];
    append(text, (size_t)snprintf(text, sizeof text, "caller:%s 1\n", info.dli_fname));
    return;
  }
}

int fails(call_t call) {
  const unsigned long count = __atomic_add_fetch(&g_counts[call], 1, __ATOMIC_RELAXED);
  if (!g_main_called || call != g_failing || count != g_failing_count) return 0;
  g_failing = CALL_COUNT;  // backtrace() may allocate memory
  write_caller();
  errno = g_failing_errno;
  return 1;
}
