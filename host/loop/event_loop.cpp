// SPDX-License-Identifier: MIT
#include "host/loop/event_loop.h"

#include <pthread.h>

#include <csignal>
#include <string>
#include <utility>

#include "binding/handlers.h"
#include "host/include/cpp2c_host.h"
#include "include_c"

namespace host {
namespace {

static_assert(C_LOOP_READ == EV_READ && C_LOOP_WRITE == EV_WRITE && C_LOOP_PERSIST == EV_PERSIST &&
                  C_LOOP_EDGE == EV_ET,
              "masks are passed to libevent unchanged");
static_assert((C_LOOP_ONCE & (EV_TIMEOUT | EV_READ | EV_WRITE | EV_SIGNAL | EV_PERSIST | EV_ET | EV_FINALIZE |
                              EV_CLOSED)) == 0,
              "libevent must not use this bit");

constexpr int kReadiness = C_LOOP_READ | C_LOOP_WRITE;

bool isMask(int events) {
  constexpr int kAll = kReadiness | C_LOOP_PERSIST | C_LOOP_EDGE | C_LOOP_ONCE;
  constexpr int kBoth = C_LOOP_PERSIST | C_LOOP_ONCE;
  return (events & ~kAll) == 0 && (events & kReadiness) != 0 && (events & kBoth) != kBoth;
}

int g_running_loops = 0;

// A forked process shares the loop's descriptors: a signal caught there would stop the loop of its parent.
void restoreDefaultSignals() {
  if (g_running_loops == 0) return;
  std::signal(SIGINT, SIG_DFL);
  std::signal(SIGTERM, SIG_DFL);
}

}  // namespace

EventLoop::EventLoop(EventBase& base, Registry& registry) : base_(base), registry_(registry) {}

int EventLoop::addFd(int fd, int events, ILoopData* handler) {
  if (fd < 0 || !isMask(events) || handler == nullptr) return C_RESULT_PARAM;

  if (!base_.separateFromParent()) return C_RESULT_SYSTEM_CALL;
  const bool once = (events & C_LOOP_ONCE) != 0;
  const auto mask = static_cast<short>(once ? events & ~C_LOOP_ONCE : events | EV_PERSIST);
  EventPtr event(event_new(base_.get(), fd, mask, onReady, this));
  if (event == nullptr) return C_RESULT_NO_MEMORY;
  // Everything is allocated before the watch is replaced: without memory, it stays as it is.
  std::map<int, Watch> created;
  ::event* const added = event.get();
  created.emplace(fd, Watch{std::move(event), handler, once,
                            registry_.add(RegistrationKind::kFd, std::to_string(fd), calleeOf(*handler))});
  auto replaced = watches_.extract(fd);
  // First: libevent refuses to watch a descriptor both level-triggered and edge-triggered.
  if (!replaced.empty()) event_del(replaced.mapped().event.get());
  if (event_add(added, nullptr) == 0) {
    watches_.merge(created);
    return C_RESULT_OK;
  }
  const bool restored = !replaced.empty() && event_add(replaced.mapped().event.get(), nullptr) == 0;
  if (restored) watches_.insert(std::move(replaced));
  return C_RESULT_SYSTEM_CALL;
}

int EventLoop::delFd(int fd) {
  if (!base_.separateFromParent()) return C_RESULT_SYSTEM_CALL;
  return watches_.erase(fd) == 1 ? C_RESULT_OK : C_RESULT_NOT_FOUND;
}

void EventLoop::onReady(evutil_socket_t fd, short events, void* self) {
  auto& loop = *static_cast<EventLoop*>(self);
  auto watch = loop.watches_.find(fd);
  const auto call = [handler = watch->second.handler, fd, events] {
    return handler->handler(static_cast<short>(events & kReadiness), fd);
  };
  if (!watch->second.once) {
    watch->second.registration.call(call);
    return;
  }
  const Watch last = std::move(watch->second);
  loop.watches_.erase(watch);
  last.registration.call(call);
}

void EventLoop::onSignal(evutil_socket_t /*signal*/, short /*events*/, void* self) {
  static_cast<EventLoop*>(self)->stop();
}

EventPtr EventLoop::stopOn(int signal) {
  EventPtr event(evsignal_new(base_.get(), signal, onSignal, this));
  if (event != nullptr && event_add(event.get(), nullptr) != 0) event.reset();
  return event;
}

int EventLoop::run() {
  if (running_) return C_RESULT_REDUNDANT;
  if (!base_.separateFromParent()) return C_RESULT_SYSTEM_CALL;
  running_ = true;
  failed_ = false;
  static const bool prepared = pthread_atfork(nullptr, nullptr, restoreDefaultSignals) == 0;
  g_running_loops++;
  // Both signals stay caught until the callback returns: a second signal must not interrupt it.
  const EventPtr interrupt = stopOn(SIGINT);
  const EventPtr terminate = stopOn(SIGTERM);
  const bool ran =
      prepared && interrupt != nullptr && terminate != nullptr && event_base_dispatch(base_.get()) >= 0;
  when_stopped_();
  g_running_loops--;
  running_ = false;
  return ran && !failed_ ? C_RESULT_OK : C_RESULT_SYSTEM_CALL;
}

void EventLoop::stop() {
  event_base_loopbreak(base_.get());
}

void EventLoop::fail() {
  failed_ = true;
  stop();
}

}  // namespace host
