// SPDX-License-Identifier: MIT
#include "host/event/event_service.h"

#include <utility>

#include "binding/handlers.h"
#include "include_c"

namespace host {

EventService::EventService(std::string source, Registry& registry)
    : source_(std::move(source)), registry_(registry) {}

int EventService::registObserver(std::string event, IEventObserver* observer) {
  if (observer == nullptr) return C_RESULT_PARAM;
  observers_.add(event, observer, registry_.add(RegistrationKind::kEvent, event, calleeOf(*observer)));
  return C_RESULT_OK;
}

int EventService::unregistObserver(std::string event, IEventObserver* observer) {
  return observers_.remove(event, observer) ? C_RESULT_OK : C_RESULT_NOT_FOUND;
}

int EventService::notify(std::string event, std::string data, int flags) {
  if (flags != 0) return C_RESULT_PARAM;
  on_event_({event, data, source_});
  const bool notified = observers_.notify(
      event, [&](IEventObserver& observer) { return observer.update(event, data, source_); });
  return notified ? C_RESULT_OK : C_RESULT_SYSTEM_CALL;
}

}  // namespace host
