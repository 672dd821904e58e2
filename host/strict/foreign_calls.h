// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_STRICT_FOREIGN_CALLS_H
#define CPP2C_HOST_STRICT_FOREIGN_CALLS_H

#include <mutex>
#include <vector>

#include "host/guard/operation.h"
#include "host/loop/event_base.h"

class Misuse;

// Calls that come from other threads than the loop's. They are written down where they come from and reported
// on the loop's thread: nothing of the context may be used anywhere else.
class ForeignCalls {
 public:
  ForeignCalls(const Misuse& misuse, EventBase& base);
  ~ForeignCalls();
  ForeignCalls(const ForeignCalls&) = delete;
  ForeignCalls& operator=(const ForeignCalls&) = delete;

  void add(Operation operation);  // on any thread

 private:
  struct Call {
    Operation operation;
    const void* caller;
  };

  static void onWritten(evutil_socket_t fd, short events, void* self);
  void report();

  const Misuse& misuse_;
  std::mutex mutex_;
  std::vector<Call> calls_;
  int wake_fd_ = -1;
  EventPtr wake_;
};

#endif
