// SPDX-License-Identifier: MIT
#define _GNU_SOURCE
#include <dlfcn.h>
#include <fcntl.h>
#include <stdarg.h>
#include <stdio.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include "fail_call.h"

static int open_file(const char* path, int flags, unsigned mode) {
  return fails(OPEN) ? -1 : (int)syscall(SYS_openat, AT_FDCWD, path, flags, mode);
}

int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const unsigned mode = va_arg(arguments, unsigned);
  va_end(arguments);
  return open_file(path, flags, mode);
}

int open64(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const unsigned mode = va_arg(arguments, unsigned);
  va_end(arguments);
  return open_file(path, flags, mode);
}

FILE* fopen(const char* path, const char* mode) {
  FILE* (*function)(const char*, const char*) = NULL;
  *(void**)&function = dlsym(RTLD_NEXT, "fopen");
  return fails(FOPEN) ? NULL : function(path, mode);
}

ssize_t read(int fd, void* data, size_t size) {
  return fails(READ) ? -1 : syscall(SYS_read, fd, data, size);
}

ssize_t write(int fd, const void* data, size_t size) {
  return fails(WRITE) ? -1 : syscall(SYS_write, fd, data, size);
}

ssize_t pread64(int fd, void* data, size_t size, off64_t offset) {
  return fails(PREAD) ? -1 : syscall(SYS_pread64, fd, data, size, offset);
}

ssize_t pwrite64(int fd, const void* data, size_t size, off64_t offset) {
  return fails(PWRITE) ? -1 : syscall(SYS_pwrite64, fd, data, size, offset);
}

ssize_t readv(int fd, const struct iovec* parts, int count) {
  return fails(READV) ? -1 : syscall(SYS_readv, fd, parts, count);
}

ssize_t writev(int fd, const struct iovec* parts, int count) {
  return fails(WRITEV) ? -1 : syscall(SYS_writev, fd, parts, count);
}

ssize_t sendfile(int out, int in, off_t* offset, size_t size) {
  return fails(SENDFILE) ? -1 : syscall(SYS_sendfile, out, in, offset, size);
}

int fsync(int fd) {
  return fails(FSYNC) ? -1 : (int)syscall(SYS_fsync, fd);
}

int fdatasync(int fd) {
  return fails(FSYNC) ? -1 : (int)syscall(SYS_fdatasync, fd);
}

int ftruncate64(int fd, off64_t size) {
  return fails(FTRUNCATE) ? -1 : (int)syscall(SYS_ftruncate, fd, size);
}

static void* map(void* address, size_t size, int protection, int flags, int fd, off64_t offset) {
  return fails(MMAP) ? MAP_FAILED : (void*)syscall(SYS_mmap, address, size, protection, flags, fd, offset);
}

void* mmap(void* address, size_t size, int protection, int flags, int fd, off_t offset) {
  return map(address, size, protection, flags, fd, offset);
}

void* mmap64(void* address, size_t size, int protection, int flags, int fd, off64_t offset) {
  return map(address, size, protection, flags, fd, offset);
}

void* mremap(void* old, size_t old_size, size_t size, int flags, ...) {
  return fails(MREMAP) ? MAP_FAILED : (void*)syscall(SYS_mremap, old, old_size, size, flags);
}

int munmap(void* address, size_t size) {
  return fails(MUNMAP) ? -1 : (int)syscall(SYS_munmap, address, size);
}

int stat(const char* restrict path, struct stat* restrict status) {
  return fails(STAT) ? -1 : (int)syscall(SYS_stat, path, status);
}

int stat64(const char* restrict path, struct stat64* restrict status) {
  return fails(STAT) ? -1 : (int)syscall(SYS_stat, path, status);
}

int fstat(int fd, struct stat* status) {
  return fails(FSTAT) ? -1 : (int)syscall(SYS_fstat, fd, status);
}

int fstat64(int fd, struct stat64* status) {
  return fails(FSTAT) ? -1 : (int)syscall(SYS_fstat, fd, status);
}

int lstat(const char* restrict path, struct stat* restrict status) {
  return fails(LSTAT) ? -1 : (int)syscall(SYS_lstat, path, status);
}

int lstat64(const char* restrict path, struct stat64* restrict status) {
  return fails(LSTAT) ? -1 : (int)syscall(SYS_lstat, path, status);
}

int fcntl(int fd, int command, ...) {
  va_list arguments;
  va_start(arguments, command);
  void* argument = va_arg(arguments, void*);
  va_end(arguments);
  return fails(FCNTL) ? -1 : (int)syscall(SYS_fcntl, fd, command, argument);
}

int fcntl64(int fd, int command, ...) {
  va_list arguments;
  va_start(arguments, command);
  void* argument = va_arg(arguments, void*);
  va_end(arguments);
  return fails(FCNTL) ? -1 : (int)syscall(SYS_fcntl, fd, command, argument);
}

int ioctl(int fd, unsigned long request, ...) {
  va_list arguments;
  va_start(arguments, request);
  void* argument = va_arg(arguments, void*);
  va_end(arguments);
  return fails(IOCTL) ? -1 : (int)syscall(SYS_ioctl, fd, request, argument);
}

off_t lseek(int fd, off_t offset, int whence) {
  return fails(LSEEK) ? -1 : syscall(SYS_lseek, fd, offset, whence);
}

// Like the kernel, closes the descriptor even if it reports an error.
int close(int fd) {
  const int result = (int)syscall(SYS_close, fd);
  return fails(CLOSE) ? -1 : result;
}

int unlink(const char* path) {
  return fails(UNLINK) ? -1 : (int)syscall(SYS_unlink, path);
}

int rename(const char* from, const char* to) {
  return fails(RENAME) ? -1 : (int)syscall(SYS_rename, from, to);
}

int mkdir(const char* path, mode_t mode) {
  return fails(MKDIR) ? -1 : (int)syscall(SYS_mkdir, path, mode);
}

int chmod(const char* path, mode_t mode) {
  return fails(CHMOD) ? -1 : (int)syscall(SYS_chmod, path, mode);
}

int fchmod(int fd, mode_t mode) {
  return fails(FCHMOD) ? -1 : (int)syscall(SYS_fchmod, fd, mode);
}

int fchown(int fd, uid_t user, gid_t group) {
  return fails(FCHOWN) ? -1 : (int)syscall(SYS_fchown, fd, user, group);
}

int access(const char* path, int mode) {
  return fails(ACCESS) ? -1 : (int)syscall(SYS_access, path, mode);
}

char* getcwd(char* buffer, size_t size) {
  char* (*function)(char*, size_t) = NULL;
  *(void**)&function = dlsym(RTLD_NEXT, "getcwd");
  return fails(GETCWD) ? NULL : function(buffer, size);
}

ssize_t readlink(const char* restrict path, char* restrict buffer, size_t size) {
  return fails(READLINK) ? -1 : syscall(SYS_readlink, path, buffer, size);
}
