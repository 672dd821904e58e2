// SPDX-License-Identifier: MIT
#include "binding/event.h"

#include <algorithm>
#include <utility>

#include "binding/services.h"

int __EventC::update(std::string event, std::string data, std::string source) {
  if (callback == nullptr) return C_RESULT_NO_CALLBACK;
  return callback(user, event.c_str(), data.c_str(), source.c_str());
}

void c_event_regist_observer(const char* event, c_event_callback callback, void* user) {
  IEvent* service = currentEvent();
  if (service == nullptr) return;

  // Everything is allocated before the service is called: a registered observer is always listed.
  std::string name = event;
  std::list<__EventC*> added;
  added.push_back(nullptr);
  __EventC* observer = added.front() = new __EventC;
  observer->callback = callback;
  observer->user = user;
  service->registObserver(std::move(name), observer);
  g_event_observers.splice(g_event_observers.end(), added);
}

void c_event_unregist_observer(const char* event, c_event_callback callback) {
  IEvent* service = currentEvent();
  if (service == nullptr) return;

  // Selects the registration by its callback only, not by its event or user pointer.
  auto found = std::find_if(g_event_observers.begin(), g_event_observers.end(),
                            [callback](const __EventC* observer) { return observer->callback == callback; });
  if (found == g_event_observers.end()) return;

  __EventC* observer = *found;
  service->unregistObserver(event, observer);
  g_event_observers.remove(observer);  // every entry of it: keep it so
  // Do not delete the observer here: `event` may differ from the event for which it was registered, and then
  // the service still calls it.
}

void c_event_notify(const char* event, const char* data) {
  if (IEvent* service = currentEvent()) service->notify(event, data, 0);
}
