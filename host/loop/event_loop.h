// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_LOOP_EVENT_LOOP_H
#define CPP2C_HOST_LOOP_EVENT_LOOP_H

#include <functional>
#include <map>
#include <utility>

#include "binding/context.h"
#include "host/loop/event_base.h"
#include "host/registration/registry.h"

namespace host {

// Watches descriptors and calls their handlers. A handler may add and delete any watch, including its own.
// A handler must exist while it is registered and while it is called.
class EventLoop final : public ILoop {
 public:
  EventLoop(EventBase& base, Registry& registry);

  // `events` is a mask of c_loop_event. Adding a watched descriptor replaces its watch.
  int addFd(int fd, int events, ILoopData* handler) override;
  int delFd(int fd) override;

  // Stops on SIGINT, SIGTERM, stop() or fail(), then calls the function that callWhenStopped() has set and
  // returns: C_RESULT_SYSTEM_CALL after fail().
  int run() override;
  void stop();
  void fail();
  void callWhenStopped(std::function<void()> callback) { when_stopped_ = std::move(callback); }

  int reserved5() override { return 0; }

 private:
  struct Watch {
    EventPtr event;
    ILoopData* handler;
    bool once;
    RegistrationHandle registration;
  };

  static void onReady(evutil_socket_t fd, short events, void* self);
  static void onSignal(evutil_socket_t signal, short events, void* self);
  EventPtr stopOn(int signal);

  EventBase& base_;
  Registry& registry_;
  std::map<int, Watch> watches_;
  std::function<void()> when_stopped_ = [] {};
  bool running_ = false;
  bool failed_ = false;
};

}  // namespace host

#endif
