// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_GUARD_GUARDED_EVENT_H
#define CPP2C_HOST_GUARD_GUARDED_EVENT_H

#include <string>
#include <utility>

#include "binding/context.h"
#include "host/guard/guard.h"

class GuardedEvent final : public IEvent {
 public:
  GuardedEvent(Guard& guard, IEvent& events) : guard_(guard), events_(events) {}

  int registObserver(std::string event, IEventObserver* observer) override {
    return guard_.enter({Operation::kRegistEventObserver, event},
                        [&] { return events_.registObserver(std::move(event), observer); });
  }

  int unregistObserver(std::string event, IEventObserver* observer) override {
    return guard_.enter({Operation::kUnregistEventObserver, event},
                        [&] { return events_.unregistObserver(std::move(event), observer); });
  }

  int notify(std::string event, std::string data, int flags) override {
    return guard_.enter({Operation::kNotify, event, data},
                        [&] { return events_.notify(std::move(event), std::move(data), flags); });
  }

 private:
  Guard& guard_;
  IEvent& events_;
};

#endif
