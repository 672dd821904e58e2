// SPDX-License-Identifier: MIT
// A module that cannot be loaded.
#include "include_c"

static int refuse(void) {
  return C_RESULT_NO_MEMORY;
}

static ModuleCallbacks g_callbacks = {.onLoad = refuse};

__attribute__((visibility("default"))) void* getInstance(void* context);
__attribute__((visibility("default"))) void relInstance(void* module);

void* getInstance(void* context) {
  (void)context;
  return c_module_regist(&g_callbacks);
}

void relInstance(void* module) {
  c_module_unregist(module);
}
