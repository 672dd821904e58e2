// SPDX-License-Identifier: MIT
#include "host/strict/foreign_thread_calls.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdint>
#include <string>

#include "host/strict/misuse.h"
#include "host/symbol/caller.h"
#include "include_c"
#include "util/error.h"

namespace host {

ForeignThreadCalls::ForeignThreadCalls(const Misuse& misuse, EventBase& base)
    : misuse_(misuse), wake_fd_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  wake_.reset(event_new(base.get(), wake_fd_, EV_READ | EV_PERSIST, onWritten, this));
  if (wake_fd_ < 0 || wake_ == nullptr || event_add(wake_.get(), nullptr) != 0) {
    throw util::Error(C_RESULT_SYSTEM_CALL, "strict mode cannot watch for calls from other threads");
  }
}

ForeignThreadCalls::~ForeignThreadCalls() {
  report();
  wake_.reset();
  close(wake_fd_);
}

void ForeignThreadCalls::add(Operation operation) {
  const std::lock_guard<std::mutex> lock(mutex_);
  calls_.push_back({operation, callerOfTheContext()});
  const std::uint64_t one = 1;
  if (write(wake_fd_, &one, sizeof one) != sizeof one) return;  // the counter is full: the loop wakes anyway
}

void ForeignThreadCalls::onWritten(evutil_socket_t fd, short /*events*/, void* self) {
  std::uint64_t count = 0;
  if (read(fd, &count, sizeof count) == sizeof count) static_cast<ForeignThreadCalls*>(self)->report();
}

void ForeignThreadCalls::report() {
  std::vector<Call> calls;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    calls.swap(calls_);
  }
  for (const Call& call : calls) {
    misuse_.reportCallFrom(
        call.caller, std::string(nameOf(call.operation)) + " is called on another thread than the loop's");
  }
}

}  // namespace host
