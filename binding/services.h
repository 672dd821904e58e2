// SPDX-License-Identifier: MIT
// How the C functions get the context and its services.
//
// A C function calls these functions each time and stores nothing: between two calls, the context may have
// been released or may have become available.
#ifndef CPP2C_BINDING_SERVICES_H
#define CPP2C_BINDING_SERVICES_H

#include "binding/context.h"
#include "binding/dll_mgr.h"
#include "binding/globals.h"
#include "include_c"

// Returns the same as getContext(), but without a function call if the context has been obtained.
inline IContext* currentContext() {
  IContext* obtained = g_context_library != nullptr ? g_context_library->obtained() : nullptr;
  return obtained != nullptr ? obtained : getContext();
}

// Returns the service from `getter`, or null if there is no context or no such service.
template <typename Service>
Service* serviceOf(IContext* context, Service* (IContext::*getter)()) {
  return context != nullptr ? (context->*getter)() : nullptr;
}

inline ICfm* currentCfm() {
  return serviceOf(currentContext(), &IContext::getCfm);
}
inline IEvent* currentEvent() {
  return serviceOf(currentContext(), &IContext::getEvent);
}
inline IHeartbeat* currentHeartbeat() {
  return serviceOf(currentContext(), &IContext::getHeartbeat);
}
inline ILog* currentLog() {
  return serviceOf(currentContext(), &IContext::getLog);
}
inline ILoop* currentLoop() {
  return serviceOf(currentContext(), &IContext::getLoop);
}

#endif
