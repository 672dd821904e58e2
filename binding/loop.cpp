// SPDX-License-Identifier: MIT
#include "binding/loop.h"

#include "binding/services.h"

int __LoopData::handler(short events, int value) {
  // Do not use members after the call: the callback may stop its own watch, which deletes this object.
  if (callback != nullptr) callback(user, events, value);
  return 0;
}

int c_loop_add_fd(int fd, int events, c_loop_callback callback, void* user) {
  ILoop* loop = currentLoop();
  if (loop == nullptr) return 0;

  // If there is no memory for the watch, a null entry remains, which has no effect.
  __LoopData*& watch = g_fd_watches.insert({fd, nullptr}).first->second;
  if (watch == nullptr) watch = new __LoopData;
  watch->callback = callback;
  watch->user = user;
  watch->fd = fd;
  return loop->addFd(fd, events, watch);
}

void c_loop_del_fd(int fd) {
  auto entry = g_fd_watches.find(fd);
  __LoopData* watch = nullptr;
  if (entry != g_fd_watches.end()) {
    watch = entry->second;
    g_fd_watches.erase(entry);
  }

  // Calls delFd() for an unwatched descriptor too, because the loop may know it from another source. The
  // adapter is deleted last, when the loop no longer uses it.
  if (ILoop* loop = currentLoop()) loop->delFd(fd);
  delete watch;
}
