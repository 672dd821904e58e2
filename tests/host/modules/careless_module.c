// SPDX-License-Identifier: MIT
// A module that observes an event and has no unload function to unregister in. When it is released, it prints
// the result of a call to the context.
#include <stddef.h>
#include <stdio.h>

#include "include_c"

CPP2C_API void* getInstance(void* context);
CPP2C_API void relInstance(void* module);

static int forgotten_observer(void* user, const char* event, const char* data, const char* source) {
  (void)user, (void)event, (void)data, (void)source;
  return 0;
}

static int on_load(void) {
  c_event_regist_observer("link-up", forgotten_observer, NULL);
  return 0;
}

void* getInstance(void* context) {
  static ModuleCallbacks table = {.onLoad = on_load};
  (void)context;
  return c_module_regist(&table);
}

void relInstance(void* module) {
  if (module != NULL) printf("released: %d\n", c_context_debug_switch(0));
  c_module_unregist(module);
}
