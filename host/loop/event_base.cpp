// SPDX-License-Identifier: MIT
#include "host/loop/event_base.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include "binding/context.h"
#include "host/include/cpp2c_host.h"
#include "include_c"
#include "util/error.h"

namespace host {
namespace {

// libevent has one log callback per process and passes it no user pointer.
ILog* g_log = nullptr;

// libevent ends the process if it gets no descriptors for its signals.
bool canOpenDescriptors() {
  constexpr int kNeeded = 4;
  int opened[kNeeded];
  int count = 0;
  while (count < kNeeded && (opened[count] = eventfd(0, EFD_CLOEXEC)) >= 0) count++;
  for (int i = 0; i < count; i++) close(opened[i]);
  return count == kNeeded;
}

void logMessage(int severity, const char* text) {
  g_log->record("libevent", severity >= EVENT_LOG_WARN ? C_LOG_WARNING : C_LOG_DEBUG, text);
}

}  // namespace

EventBase::EventBase(ILog& log) : process_(getpid()) {
  if (!canOpenDescriptors()) throw util::Error(C_RESULT_SYSTEM_CALL, "cannot create the event loop");
  g_log = &log;
  event_set_log_callback(logMessage);
  base_.reset(event_base_new());
  if (base_ == nullptr || event_base_priority_init(base_.get(), kLastPriority + 1) != 0) {
    throw util::Error(C_RESULT_SYSTEM_CALL, "cannot create the event loop");
  }
}

EventBase::~EventBase() {
  base_.reset();
  event_set_log_callback(nullptr);
  g_log = nullptr;
}

bool EventBase::separateFromParent() {
  if (getpid() == process_) return true;
  if (event_reinit(base_.get()) != 0) return false;
  process_ = getpid();
  return true;
}

timeval timevalOf(std::chrono::nanoseconds duration) {
  using std::chrono::microseconds;
  using std::chrono::seconds;
  const auto rounded = std::chrono::ceil<microseconds>(duration);
  const auto whole = std::chrono::floor<seconds>(rounded);
  return {static_cast<time_t>(whole.count()), static_cast<suseconds_t>((rounded - whole).count())};
}

EventPtr callEvery(EventBase& base, std::chrono::milliseconds period, event_callback_fn callback,
                   void* argument) {
  EventPtr timer(event_new(base.get(), -1, EV_PERSIST, callback, argument));
  const timeval time = timevalOf(period);
  if (timer == nullptr || event_add(timer.get(), &time) != 0) {
    throw util::Error(C_RESULT_SYSTEM_CALL, "cannot create a periodic timer");
  }
  return timer;
}

}  // namespace host
