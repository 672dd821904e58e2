// SPDX-License-Identifier: MIT
#include "lifecycle.h"

#include <stdio.h>

#include "include_c"

static int tell(const char* step) {
  return printf("lifecycle: %s\n", step) > 0 ? C_RESULT_OK : C_RESULT_SYSTEM_CALL;
}

static int on_load(void) {
  return tell("loaded");
}

static int on_start(void) {
  return tell("started");
}

static int on_config(const char* name, int arg) {
  (void)name, (void)arg;
  return tell("configured");
}

static int on_run(void) {
  return tell("running");
}

// The master observer comes before the modules when the steps are reversed.
static int on_unconfig(const char* name, int arg) {
  (void)name, (void)arg;
  return tell("stopping");
}

static int on_unload(void) {
  return tell("unloading");
}

static int on_notice(const char* name) {
  return printf("notice: \"%s\"\n", name) > 0 ? C_RESULT_OK : C_RESULT_SYSTEM_CALL;
}

static ModuleCallbacks g_master = {
    .onLoad = on_load,
    .onStart = on_start,
    .onConfig = on_config,
    .onRun = on_run,
    .onUnconfig = on_unconfig,
    .onUnload = on_unload,
    .recvDependence = on_notice,
};

int lifecycle_follow(void) {
  return c_context_regist_master_observer(&g_master);
}
