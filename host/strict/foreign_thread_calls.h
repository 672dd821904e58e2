// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_STRICT_FOREIGN_THREAD_CALLS_H
#define CPP2C_HOST_STRICT_FOREIGN_THREAD_CALLS_H

#include <mutex>
#include <vector>

#include "host/guard/operation.h"
#include "host/loop/event_base.h"

namespace host {

class Misuse;

// Calls from other threads than the loop's. They are recorded on their thread and reported on the loop's
// thread, because no other part of the host context may be used elsewhere.
class ForeignThreadCalls {
 public:
  ForeignThreadCalls(const Misuse& misuse, EventBase& base);
  ~ForeignThreadCalls();
  ForeignThreadCalls(const ForeignThreadCalls&) = delete;
  ForeignThreadCalls& operator=(const ForeignThreadCalls&) = delete;

  void add(Operation operation);  // on any thread

 private:
  struct Call {
    Operation operation;
    const void* caller;
  };

  static void onWritten(evutil_socket_t fd, short events, void* self);
  void report();

  const Misuse& misuse_;
  const int wake_fd_;
  EventPtr wake_;
  std::mutex mutex_;
  std::vector<Call> calls_;
};

}  // namespace host

#endif
