// SPDX-License-Identifier: MIT
// A module that misuses the interface: it blocks the loop and leaves a registration behind.
#include <stddef.h>
#include <unistd.h>

#include "include_c"

static int slow_observer(void* user, const char* event, const char* data, const char* source) {
  (void)user, (void)event, (void)data, (void)source;
  usleep(60000);
  return 0;
}

static int on_load(void) {
  c_event_regist_observer("dawdle", slow_observer, NULL);
  return 0;
}

static int on_unload(void) {
  return 0;
}

static ModuleCallbacks g_callbacks = {.onLoad = on_load, .onUnload = on_unload};

__attribute__((visibility("default"))) void* getInstance(void* context);
__attribute__((visibility("default"))) void relInstance(void* module);

void* getInstance(void* context) {
  (void)context;
  return c_module_regist(&g_callbacks);
}

void relInstance(void* module) {
  c_module_unregist(module);
}
