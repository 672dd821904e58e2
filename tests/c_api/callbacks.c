/* SPDX-License-Identifier: MIT */
#include "tests/c_api/callbacks.h"

#include <stdarg.h>
#include <stdio.h>
#include <string.h>

/* The calls of the callbacks since the last was_told(), each followed by a semicolon. */
static char told[512];

static void tell(const char* format, ...) {
  const size_t length = strlen(told);
  va_list arguments;
  va_start(arguments, format);
  vsnprintf(told + length, sizeof told - length, format, arguments);
  va_end(arguments);
}

int was_told(const char* expected) {
  const int same = strcmp(told, expected) == 0;
  if (!same) fprintf(stderr, "recorded calls: %s\n", told);
  told[0] = '\0';
  return same;
}

void on_ready(void* user, short events, int value) {
  tell("%s %d %d;", (const char*)user, events, value);
}

int on_timer(void) {
  tell("timer;");
  return 30;
}

int on_event(void* user, const char* event, const char* data, const char* source) {
  tell("%s %s %s %s;", (const char*)user, event, data, source);
  return 31;
}

int on_change(void* user, int id, const char* instance, int operation, const char* leaf) {
  tell("%s %d %s %d %s;", (const char*)user, id, instance, operation, leaf);
  return 32;
}

void on_request(int id, const char* instance, const char* leaf, void* user, void* handle) {
  char answer[] = "computed";
  tell("%d %s %s %s;", id, instance, leaf, (const char*)user);
  c_cfm_data_provider_set(handle, "str", answer);
}

int pass3(int id, char* name, void* userdata) {
  tell("pass3 %d %s %s;", id, name, (const char*)userdata);
  return 0;
}

int pass4(int id, char* name, void* userdata, void* arg) {
  tell("pass4 %d %s %s %s;", id, name, (const char*)userdata, (const char*)arg);
  return 0;
}

int on_visit(int id, char* name, void* userdata, c_pass_fn3 pass_fn3, c_pass_fn4 pass_fn4, void* arg) {
  char data[] = "data";
  tell("visit %d %s %s;", id, name, userdata != NULL ? (const char*)userdata : "none");
  pass_fn3(id, name, data);
  pass_fn4(id, name, data, arg);
  return 1;
}

static int on_load(void) {
  tell("load;");
  return 1;
}

static int on_start(void) {
  tell("start;");
  return 2;
}

static int on_config(const char* name, int arg) {
  tell("config %s %d;", name, arg);
  return 4;
}

static int on_run(void) {
  tell("run;");
  return 8;
}

static int on_unconfig(const char* name, int arg) {
  tell("unconfig %s %d;", name, arg);
  return 16;
}

static int on_unload(void) {
  tell("unload;");
  return 32;
}

static int on_dependence(const char* name) {
  tell("dependence %s;", name);
  return 64;
}

ModuleCallbacks lifecycle = {on_load, on_start, on_config, on_run, on_unconfig, on_unload, on_dependence};
