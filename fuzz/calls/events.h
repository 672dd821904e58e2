// SPDX-License-Identifier: MIT
#ifndef CPP2C_FUZZ_CALLS_EVENTS_H
#define CPP2C_FUZZ_CALLS_EVENTS_H

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "fuzz/calls/bridge.h"

template <int N>
int onEvent(void* user, const char* event, const char* data, const char* source) {
  return Bridge::current->called(
      described(std::string("event"), N, user, std::string(event), std::string(data), std::string(source)));
}

// Event observers.
class Events {
 public:
  explicit Events(Bridge& bridge) : bridge_(bridge) {}

  void add() {
    const char* event = bridge_.input.oneOf(kNames);
    const int function = anyFunction();
    void* user = bridge_.anyUser();
    const Bridge::Scope scope(bridge_, "c_event_regist_observer()");
    const bool reached = bridge_.reachService("getEvent");
    if (reached) bridge_.expect("event.registObserver('" + std::string(event) + "', object)");
    c_event_regist_observer(event, kFunctions[function], user);
    if (reached)
      observers_.push_back({function, user, bridge_.proxy.context.event.registered.back().observer});
  }

  void remove() {
    const char* event = bridge_.input.oneOf(kNames);
    const int function = anyFunction();
    const Bridge::Scope scope(bridge_, "c_event_unregist_observer()");
    const bool reached = bridge_.reachService("getEvent");
    const auto found = std::find_if(observers_.begin(), observers_.end(),
                                    [&](const Observer& observer) { return observer.function == function; });
    const bool removes = reached && found != observers_.end();
    if (removes) bridge_.expect("event.unregistObserver('" + std::string(event) + "', object)");
    c_event_unregist_observer(event, kFunctions[function]);
    if (!removes) return;
    require(bridge_.proxy.context.event.unregistered.back().observer == found->adapter,
            "the oldest registration of a function is removed");
    removed_.push_back(*found);
    kept_.emplace_back(found->adapter);
    observers_.erase(found);
  }

  void notify() {
    const std::string event = bridge_.input.text();
    const std::string data = bridge_.input.text();
    const Bridge::Scope scope(bridge_, "c_event_notify()");
    if (bridge_.reachService("getEvent")) bridge_.expect("event.notify('" + event + "', '" + data + "', 0)");
    c_event_notify(event.c_str(), data.c_str());
  }

  void deliver() { deliverTo(observers_); }

  // The library does not delete a removed observer, because the service may still call it.
  void deliverToRemoved() { deliverTo(removed_); }

  void clearInModel() { observers_.clear(); }

 private:
  struct Observer {
    int function;
    void* user;
    IEventObserver* adapter;
  };

  static constexpr c_event_callback kFunctions[] = {onEvent<0>, onEvent<1>, nullptr};

  int anyFunction() { return static_cast<int>(bridge_.input.below(3)); }

  void deliverTo(const std::vector<Observer>& observers) {
    const unsigned int index = bridge_.input.below(256);
    const std::string event = bridge_.input.bytes();
    const std::string data = bridge_.input.bytes();
    const std::string source = bridge_.input.bytes();
    if (observers.empty()) return;
    const Observer observer =
        observers[index % observers.size()];  // a copy, because the callback may remove it
    const Bridge::Scope scope(bridge_, "an event observer");
    const bool calls = kFunctions[observer.function] != nullptr;
    const std::string callback =
        calls ? described(std::string("event"), observer.function, observer.user, std::string(event.c_str()),
                          std::string(data.c_str()), std::string(source.c_str()))
              : "";
    const int result =
        bridge_.expectCallback(callback, [&] { return observer.adapter->update(event, data, source); });
    requireEqual(result, calls ? bridge_.result() : C_RESULT_NO_CALLBACK, "result of an event observer");
  }

  Bridge& bridge_;
  std::vector<Observer> observers_;  // in the order of registration
  std::vector<Observer> removed_;
  std::vector<std::unique_ptr<IEventObserver>> kept_;  // the adapters of removed observers
};

#endif
