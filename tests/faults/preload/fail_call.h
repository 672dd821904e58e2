// SPDX-License-Identifier: MIT
// A library to preload: makes one call of the allocator or of the system fail.
//
// FAIL_CALL=NAME:N:ERRNO makes the Nth call of NAME in the process fail with this number of an error. Calls
// of NAME are counted from 1, beginning with main(). FAIL_COUNTS=FILE appends the number of calls of each
// name to FILE when the process exits. Processes that it starts are not affected: both variables are removed
// from the environment.
//
// Calls that the C library makes internally, for example those of fread(), are not counted.
#ifndef CPP2C_TESTS_FAULTS_FAIL_CALL_H
#define CPP2C_TESTS_FAULTS_FAIL_CALL_H

// The calls that can fail. Related functions share a name.
typedef enum call {
  ALLOCATE,
  OPEN,
  FOPEN,
  READ,
  WRITE,
  PREAD,
  PWRITE,
  READV,
  WRITEV,
  SENDFILE,
  FSYNC,
  FTRUNCATE,
  MMAP,
  MREMAP,
  MUNMAP,
  STAT,
  FSTAT,
  LSTAT,
  FCNTL,
  IOCTL,
  LSEEK,
  CLOSE,
  UNLINK,
  RENAME,
  MKDIR,
  CHMOD,
  FCHMOD,
  FCHOWN,
  ACCESS,
  GETCWD,
  READLINK,
  SOCKET,
  SOCKETPAIR,
  BIND,
  LISTEN,
  ACCEPT,
  CONNECT,
  SEND,
  RECV,
  SHUTDOWN,
  GETSOCKOPT,
  SETSOCKOPT,
  GETSOCKNAME,
  GETPEERNAME,
  EPOLL_CREATE,
  EPOLL_CTL,
  EPOLL_WAIT,
  EVENTFD,
  TIMERFD_CREATE,
  TIMERFD_SETTIME,
  PIPE,
  POLL,
  FORK,
  SPAWN,
  WAITPID,
  SIGNAL,
  CALL_COUNT
} call_t;

// Counts one call. Returns 1 if it is to fail, after setting errno to the number of the error, otherwise 0.
__attribute__((visibility("hidden"))) int fails(call_t call);

#endif
