// SPDX-License-Identifier: MIT
#include "module_library.h"

#include <stddef.h>
#include <string.h>

#include "cpp2c_host.h"
#include "include_c"
#include "tree.h"

// The framework's answer to a configuration that is another participant's.
enum { NOT_FOR_ME = 100 };

// Logs a step that has been taken. One that has failed is reported by the framework.
static int done(const char* step, int result) {
  if (result == C_RESULT_OK) c_log_record(g_service.name, C_LOG_INFO, "%s", step);
  return result;
}

static int on_load(void) {
  return done("loaded", C_RESULT_OK);
}

static int on_start(void) {
  return done("prepared", g_service.prepare != NULL ? g_service.prepare() : C_RESULT_OK);
}

static int on_config(const char* name, int arg) {
  (void)arg;
  if (strcmp(name, "cfmd") != 0) return NOT_FOR_ME;
  return done("configured", g_service.start());
}

static int on_run(void) {
  return done("running", g_service.run != NULL ? g_service.run() : C_RESULT_OK);
}

static int on_unconfig(const char* name, int arg) {
  (void)arg;
  if (strcmp(name, "master") != 0) return NOT_FOR_ME;
  g_service.stop();
  return done("unconfigured", C_RESULT_OK);
}

// Stops as well: a framework need not take a configuration back if that of another module failed.
static int on_unload(void) {
  g_service.stop();
  return done("unloaded", C_RESULT_OK);
}

static int on_notice(const char* name) {
  if (strcmp(name, INTERFACES_NOTICE) != 0) return C_RESULT_OK;
  g_service.refresh();
  return done("told of \"" INTERFACES_NOTICE "\"", C_RESULT_OK);
}

static ModuleCallbacks g_callbacks = {
    .onLoad = on_load,
    .onStart = on_start,
    .onConfig = on_config,
    .onRun = on_run,
    .onUnconfig = on_unconfig,
    .onUnload = on_unload,
    .recvDependence = on_notice,
};

// There is one module however often its library is listed: it must not be configured twice.
static void* g_module;

void* getInstance(void* context) {
  (void)context;  // it is reached through the C interface
  if (g_module == NULL) g_module = c_module_regist(&g_callbacks);
  return g_module;
}

// Called twice when the library is closed, first with the module, then with NULL.
void relInstance(void* module) {
  c_module_unregist(module);
  g_module = NULL;
}
