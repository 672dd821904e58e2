// SPDX-License-Identifier: MIT
#include "binding/event.h"

#include <algorithm>

#include "binding/services.h"

int __EventC::update(std::string event, std::string data, std::string source) {
  if (callback == nullptr) return C_RESULT_NO_CALLBACK;
  return callback(user, event.c_str(), data.c_str(), source.c_str());
}

void c_event_regist_observer(const char* event, c_event_callback callback, void* user) {
  IEvent* service = currentEvent();
  if (service == nullptr) return;

  auto* observer = new __EventC;
  observer->callback = callback;
  observer->user = user;
  service->registObserver(event, observer);
  g_event_observers.push_back(observer);
}

void c_event_unregist_observer(const char* event, c_event_callback callback) {
  IEvent* service = currentEvent();
  if (service == nullptr) return;

  // By the callback alone: neither the event nor the user pointer narrows the choice.
  auto found = std::find_if(g_event_observers.begin(), g_event_observers.end(),
                            [callback](const __EventC* observer) { return observer->callback == callback; });
  if (found == g_event_observers.end()) return;

  __EventC* observer = *found;
  service->unregistObserver(event, observer);
  g_event_observers.remove(observer);
  // The observer is not deleted, unlike a configuration observer: the event given here need not be the one it
  // was registered for, and the service may then still call it.
}

void c_event_notify(const char* event, const char* data) {
  if (IEvent* service = currentEvent()) service->notify(event, data, 0);
}
