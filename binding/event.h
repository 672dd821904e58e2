// SPDX-License-Identifier: MIT
#ifndef CPP2C_BINDING_EVENT_H
#define CPP2C_BINDING_EVENT_H

#include "binding/handlers.h"
#include "include_c"

// Adapter that calls a C callback for an event.
class __EventC : public IEventObserver {
 public:
  int update(std::string event, std::string data, std::string source) override;

  void* user = nullptr;
  c_event_callback callback = nullptr;
};

#endif
