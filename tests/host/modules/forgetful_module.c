// SPDX-License-Identifier: MIT
// A module that observes two events and unregisters only one observer.
#include <stddef.h>

#include "include_c"

CPP2C_API void* getInstance(void* context);
CPP2C_API void relInstance(void* module);

static int forgotten_observer(void* user, const char* event, const char* data, const char* source) {
  (void)user, (void)event, (void)data, (void)source;
  return 0;
}

static int remembered_observer(void* user, const char* event, const char* data, const char* source) {
  return forgotten_observer(user, event, data, source);
}

static int on_load(void) {
  c_event_regist_observer("link-up", forgotten_observer, NULL);
  c_event_regist_observer("link-down", remembered_observer, NULL);
  return 0;
}

static int on_unload(void) {
  c_event_unregist_observer("link-down", remembered_observer);
  return 0;
}

void* getInstance(void* context) {
  static ModuleCallbacks table = {.onLoad = on_load, .onUnload = on_unload};
  (void)context;
  return c_module_regist(&table);
}

void relInstance(void* module) {
  c_module_unregist(module);
}
