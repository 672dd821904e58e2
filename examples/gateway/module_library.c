// SPDX-License-Identifier: MIT
#include "module_library.h"

#include <stddef.h>
#include <string.h>

#include "cpp2c_host.h"
#include "include_c"
#include "tree.h"

// The framework's result code for a configuration call that is meant for another participant.
enum { NOT_FOR_ME = 100 };

// Logs a completed step. The framework reports failed steps.
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

// Also stops the service: a framework may omit onUnconfig if the configuration of another module failed.
static int on_unload(void) {
  g_service.stop();
  return done("unloaded", C_RESULT_OK);
}

static int on_notice(const char* name) {
  if (strcmp(name, INTERFACES_NOTICE) != 0) return C_RESULT_OK;
  g_service.refresh();
  return done("notified of \"" INTERFACES_NOTICE "\"", C_RESULT_OK);
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

// There is only one module, even if its library is listed twice, because it must not be configured twice.
static void* g_module;

void* getInstance(void* context) {
  (void)context;  // the C interface gives access to it
  if (g_module == NULL) g_module = c_module_regist(&g_callbacks);
  return g_module;
}

// Called twice when the library is closed: with the module, then with NULL.
void relInstance(void* module) {
  c_module_unregist(module);
  g_module = NULL;
}
