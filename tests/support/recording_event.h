// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_SUPPORT_RECORDING_EVENT_H
#define CPP2C_TESTS_SUPPORT_RECORDING_EVENT_H

#include <string>
#include <vector>

#include "binding/context.h"
#include "binding/handlers.h"
#include "tests/support/call_log.h"

// An event service that records its calls.
class RecordingEvent : public IEvent {
 public:
  struct Registration {
    std::string event;
    IEventObserver* observer;
  };

  explicit RecordingEvent(CallLog& calls) : calls_(calls) {}

  std::vector<Registration> registered;
  std::vector<Registration> unregistered;

  int registObserver(std::string event, IEventObserver* observer) override {
    registered.push_back({event, observer});
    return calls_.record("event.registObserver", event, observer);
  }

  int unregistObserver(std::string event, IEventObserver* observer) override {
    unregistered.push_back({event, observer});
    return calls_.record("event.unregistObserver", event, observer);
  }

  int notify(std::string event, std::string data, int flags) override {
    return calls_.record("event.notify", event, data, flags);
  }

 private:
  CallLog& calls_;
};

#endif
