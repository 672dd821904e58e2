// A module library that uses only the installed files.
#include <stdio.h>

#include "include_c"

__attribute__((visibility("default"))) void* getInstance(void* context);
__attribute__((visibility("default"))) void relInstance(void* module);

static int on_run(void) {
  puts("greeter: running");
  return C_RESULT_OK;
}

static int on_unload(void) {
  puts("greeter: unloaded");
  return C_RESULT_OK;
}

void* getInstance(void* context) {
  static ModuleCallbacks callbacks = {.onRun = on_run, .onUnload = on_unload};
  (void)context;
  return c_module_regist(&callbacks);
}

void relInstance(void* module) {
  c_module_unregist(module);
}
