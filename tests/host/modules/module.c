// SPDX-License-Identifier: MIT
// A module that logs each of its steps. The build defines MODULE_NAME and START_ANSWER.
#include <stddef.h>

#include "cpp2c_host.h"
#include "include_c"

CPP2C_API void* getInstance(void* context);
CPP2C_API void relInstance(void* module);

static int record(const char* step) {
  c_log_record(MODULE_NAME, C_LOG_INFO, "%s", step);
  return 0;
}

static int onLoad(void) {
  return record("onLoad");
}

static int onStart(void) {
  record("onStart");
  return START_ANSWER;
}

static int onConfig(const char* name, int arg) {
  c_log_record(MODULE_NAME, C_LOG_INFO, "onConfig %s %d", name, arg);
  return 0;
}

static int onRun(void) {
  return record("onRun");
}

static int onUnconfig(const char* name, int arg) {
  c_log_record(MODULE_NAME, C_LOG_INFO, "onUnconfig %s %d", name, arg);
  return 0;
}

static int onUnload(void) {
  return record("onUnload");
}

static int recvDependence(const char* name) {
  c_log_record(MODULE_NAME, C_LOG_INFO, "recvDependence %s", name);
  return 0;
}

static ModuleCallbacks g_table = {onLoad, onStart, onConfig, onRun, onUnconfig, onUnload, recvDependence};

void* getInstance(void* context) {
  return context != NULL ? c_module_regist(&g_table) : NULL;
}

void relInstance(void* module) {
  c_module_unregist(module);
}
