// SPDX-License-Identifier: MIT
#ifndef CPP2C_FUZZ_CALLS_LOOP_H
#define CPP2C_FUZZ_CALLS_LOOP_H

#include <map>
#include <string>

#include "fuzz/calls/bridge.h"

template <int N>
void onReady(void* user, short events, int value) {
  Bridge::current->called(described(std::string("ready"), N, user, int{events}, value));
}

template <int N>
int onTimer() {
  return Bridge::current->called(described(std::string("timer"), N));
}

// Watched descriptors and the timer.
class Loop {
 public:
  explicit Loop(Bridge& bridge) : bridge_(bridge) {}

  void add() {
    const int fd = anyFd();
    const int events = bridge_.input.word();
    const auto function = static_cast<int>(bridge_.input.below(3));
    void* user = bridge_.anyUser();
    const Bridge::Scope scope(bridge_, "c_loop_add_fd()");
    int result = 0;
    const bool reached = bridge_.reachService("getLoop");
    if (reached) {
      const std::string arguments = std::to_string(fd) + ", " + std::to_string(events) + ", object";
      result = bridge_.expectResult("loop.addFd", arguments);
    }
    requireEqual(c_loop_add_fd(fd, events, kReady[function], user), result, "result of c_loop_add_fd()");
    if (reached) store(fd, {function, user, bridge_.proxy.context.loop.handlers.back()});
  }

  void remove() {
    const int fd = anyFd();
    const Bridge::Scope scope(bridge_, "c_loop_del_fd()");
    if (bridge_.reachService("getLoop")) bridge_.expect("loop.delFd(" + std::to_string(fd) + ")");
    c_loop_del_fd(fd);
    watches_.erase(fd);
  }

  void becomeReady() {
    const auto found = watches_.find(anyFd());
    const auto events = static_cast<short>(bridge_.input.word());
    const int value = bridge_.input.word();
    if (found == watches_.end()) return;
    const Bridge::Scope scope(bridge_, "a watch");
    const Watch watch = found->second;  // a copy, because the callback may remove it
    const auto call = [&] { return watch.handler->handler(events, value); };
    const bool calls = kReady[watch.function] != nullptr;
    const std::string callback =
        calls ? described(std::string("ready"), watch.function, watch.user, int{events}, value) : "";
    requireEqual(bridge_.expectCallback(callback, call), 0, "result of a watch");
  }

  void setTimer() {
    const int first = bridge_.input.word();
    const int period = bridge_.input.word();
    const auto function = static_cast<int>(bridge_.input.below(2));
    const Bridge::Scope scope(bridge_, "c_context_set_timer()");
    int result = 0;
    const bool reached = bridge_.reach();
    if (reached) {
      const std::string arguments = std::to_string(first) + ", 0, " + std::to_string(period) + ", object";
      result = bridge_.expectResult("context.setTimer", arguments);
    }
    requireEqual(c_context_set_timer(first, period, kTimers[function]), result,
                 "result of c_context_set_timer()");
    if (!reached) return;
    ITimer* timer = bridge_.proxy.context.timers.back();
    require(timer_ == nullptr || timer == timer_, "there is one timer");
    timer_ = timer;
    timer_function_ = function;
  }

  // The timer also exists after c_context_deinit().
  void expire() {
    const int value = bridge_.input.word();
    if (timer_ == nullptr) return;
    const Bridge::Scope scope(bridge_, "the timer");
    const int result = bridge_.expectCallback(described(std::string("timer"), timer_function_),
                                              [&] { return timer_->timeArrive(value); });
    requireEqual(result, bridge_.result(), "result of the timer");
  }

  void clearInModel() { watches_.clear(); }

 private:
  struct Watch {
    int function;
    void* user;
    ILoopData* handler;
  };

  static constexpr c_loop_callback kReady[] = {onReady<0>, onReady<1>, nullptr};
  static constexpr c_timer_callback kTimers[] = {onTimer<0>, onTimer<1>};

  int anyFd() {
    static constexpr int kFds[] = {0, 7, -1};
    return bridge_.input.oneOf(kFds);
  }

  void store(int fd, const Watch& watch) {
    const auto found = watches_.find(fd);
    require(found == watches_.end() || found->second.handler == watch.handler, "a descriptor has one watch");
    watches_[fd] = watch;
  }

  Bridge& bridge_;
  std::map<int, Watch> watches_;
  ITimer* timer_ = nullptr;
  int timer_function_ = 0;
};

#endif
