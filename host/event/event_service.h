// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_EVENT_EVENT_SERVICE_H
#define CPP2C_HOST_EVENT_EVENT_SERVICE_H

#include <functional>
#include <string>
#include <utility>

#include "binding/context.h"
#include "host/registration/observer_list.h"

namespace host {

// Passes each event to its observers, in order of registration, before notify() returns. An observer may
// register, unregister and notify during its call. notify() returns C_RESULT_SYSTEM_CALL if a call fails.
class EventService final : public IEvent {
 public:
  // `source` is passed to observers as the origin of each event.
  EventService(std::string source, Registry& registry);

  int registObserver(std::string event, IEventObserver* observer) override;
  int unregistObserver(std::string event, IEventObserver* observer) override;
  int notify(std::string event, std::string data, int flags) override;  // `flags` must be 0

  // Sets the function to call with each event, before its observers are called.
  struct Event {
    const std::string& name;
    const std::string& data;
    const std::string& source;
  };
  void onEvent(std::function<void(const Event&)> callback) { on_event_ = std::move(callback); }

 private:
  const std::string source_;
  Registry& registry_;
  ObserverList<std::string, IEventObserver> observers_;
  std::function<void(const Event&)> on_event_ = [](const Event&) {};
};

}  // namespace host

#endif
