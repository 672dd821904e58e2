// SPDX-License-Identifier: MIT
// The way from a C function to the context and its services.
//
// Each function goes this way anew at every call and keeps nothing: the context may have been released, or
// may have appeared, in between.
#ifndef CPP2C_BINDING_SERVICES_H
#define CPP2C_BINDING_SERVICES_H

#include "binding/context.h"
#include "binding/dll_mgr.h"
#include "binding/globals.h"
#include "include_c"

// What getContext() answers, without the calls once there is a context.
inline IContext* currentContext() {
  IContext* obtained = g_context_library != nullptr ? g_context_library->obtained() : nullptr;
  return obtained != nullptr ? obtained : getContext();
}

// The service that `getter` of the context answers, or null when there is no context or no such service.
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
