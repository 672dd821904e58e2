/* SPDX-License-Identifier: MIT */
/*
 * The whole C interface, used from C. Each function is called through a pointer of the type that the header
 * promises, so that a changed signature does not compile.
 */
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include "include_c"
#include "tests/c_api/context_view.h"

static int failures = 0;

#define CHECK(condition) check((condition) != 0, #condition, __LINE__)
#define CHECK_CALLS(expected) check_calls(expected, __LINE__)

static void check(int holds, const char* condition, int line) {
  if (holds) return;
  fprintf(stderr, "c_api_test.c:%d: does not hold: %s\n", line, condition);
  ++failures;
}

static void check_calls(const char* expected, int line) {
  const char* actual = context_calls();
  if (strcmp(actual, expected) == 0) return;
  fprintf(stderr, "c_api_test.c:%d: expected calls:\n%sactual calls:\n%s", line, expected, actual);
  ++failures;
}

/* What the callbacks have been told last. */
static char told[256];

static void on_ready(void* user, short events, int value) {
  snprintf(told, sizeof told, "%s %d %d", (const char*)user, events, value);
}

static int on_event(void* user, const char* event, const char* data, const char* source) {
  snprintf(told, sizeof told, "%s %s %s %s", (const char*)user, event, data, source);
  return 31;
}

static int on_change(void* user, int id, const char* instance, int operation, const char* leaf) {
  snprintf(told, sizeof told, "%s %d %s %d %s", (const char*)user, id, instance, operation, leaf);
  return 32;
}

static int on_load(void) {
  strcpy(told, "load");
  return 1;
}

static int on_start(void) {
  strcat(told, " start");
  return 2;
}

static int on_config(const char* name, int arg) {
  snprintf(told + strlen(told), sizeof told - strlen(told), " config %s %d", name, arg);
  return 4;
}

static int on_run(void) {
  strcat(told, " run");
  return 8;
}

static int on_unconfig(const char* name, int arg) {
  snprintf(told + strlen(told), sizeof told - strlen(told), " unconfig %s %d", name, arg);
  return 16;
}

static int on_unload(void) {
  strcat(told, " unload");
  return 32;
}

static int on_dependence(const char* name) {
  snprintf(told + strlen(told), sizeof told - strlen(told), " dependence %s", name);
  return 64;
}

static void test_start(void) {
  int (*init)(uintptr_t, uintptr_t) = c_context_init;
  int (*load)(void) = c_context_load;
  int (*run)(void) = c_loop_run;
  int (*debug_switch)(int) = c_context_debug_switch;
  int (*debug_out)(const char*, int, const char*, ...) = c_debug_out;

  context_set_result("context.init", 5);
  CHECK(init(1, 2) == 5);
  CHECK_CALLS("getInstance(null)\ncontext.init(1, 2)\n");
  context_set_result("context.load", 6);
  CHECK(load() == 6);
  CHECK_CALLS("context.load()\n");
  context_set_result("loop.run", 7);
  CHECK(run() == 7);
  CHECK_CALLS("context.getLoop()\nloop.run()\n");
  context_set_result("context.debugSwitch", 8);
  CHECK(debug_switch(3) == 8);
  CHECK_CALLS("context.debugSwitch(3)\n");
  context_set_result("context.debugOut", 9);
  CHECK(debug_out("main.c", 1, "%s %d", "text", 2) == 9);
  CHECK_CALLS("context.debugOut('main.c', 'text 2')\n");
  context_set_result("context.debugOut", 0);
}

static void test_services(void) {
  int (*lock)(void) = c_heartbeat_lock;
  int (*unlock)(void) = c_heartbeat_unlock;
  int (*save)(void) = c_cfm_save_config;

  context_set_result("heartbeat.lock", 5);
  CHECK(lock() == 5);
  CHECK_CALLS("context.getHeartbeat()\nheartbeat.lock()\n");
  context_set_result("heartbeat.unlock", 6);
  CHECK(unlock() == 6);
  CHECK_CALLS("context.getHeartbeat()\nheartbeat.unlock()\n");
  context_set_result("cfm.save", 7);
  CHECK(save() == 7);
  CHECK_CALLS("context.getCfm()\ncfm.save(1)\n");
}

static void test_modules(void) {
  void* (*regist)(ModuleCallbacks*) = c_module_regist;
  void (*unregist)(void*) = c_module_unregist;
  ModuleCallbacks table = {on_load, on_start, on_config, on_run, on_unconfig, on_unload, on_dependence};
  void* module = regist(&table);

  CHECK(drive_module(module) == 127);
  CHECK(strcmp(told, "load start config cfmd 1 run dependence net unconfig cfmd 2 unload") == 0);
  unregist(module);
  unregist(NULL);
  CHECK_CALLS("");
}

static void test_watches(void) {
  int (*add)(int, int, c_loop_callback, void*) = c_loop_add_fd;
  void (*del)(int) = c_loop_del_fd;
  char user[] = "user";

  context_set_result("loop.addFd", 5);
  CHECK(add(7, 1, on_ready, user) == 5);
  CHECK(context_fire_watch(2, 7) == 0);
  CHECK(strcmp(told, "user 2 7") == 0);
  del(7);
  CHECK_CALLS("context.getLoop()\nloop.addFd(7, 1, object)\ncontext.getLoop()\nloop.delFd(7)\n");
}

static void test_events(void) {
  void (*regist)(const char*, c_event_callback, void*) = c_event_regist_observer;
  void (*unregist)(const char*, c_event_callback) = c_event_unregist_observer;
  void (*notify)(const char*, const char*) = c_event_notify;
  char user[] = "user";

  regist("link", on_event, user);
  CHECK(context_fire_event("link", "up", "kernel") == 31);
  CHECK(strcmp(told, "user link up kernel") == 0);
  notify("link", "down");
  unregist("link", on_event);
  CHECK_CALLS(
      "context.getEvent()\nevent.registObserver('link', object)\n"
      "context.getEvent()\nevent.notify('link', 'down', 0)\n"
      "context.getEvent()\nevent.unregistObserver('link', object)\n");
}

static void test_values(void) {
  int (*str2bool)(const char*, int*) = c_cfm_str2bool;
  int (*set)(const char*, int, const char*, const void*, unsigned int) = c_cfm_set_value;
  int (*get)(const char*, const char*, void*, unsigned int) = c_cfm_get_value;
  int flag = 7;
  int32_t number = -5;
  char text[8] = {0};

  CHECK(str2bool("true", &flag) == C_RESULT_OK);
  CHECK(flag == 1);
  CHECK(str2bool("yes", &flag) == C_RESULT_PARAM);
  CHECK(flag == 0);
  context_calls();

  context_set_leaf("A.number", "int", "-12");
  context_set_leaf("A.text", "str", "abc");
  context_set_result("cfm.setValue", 9);
  CHECK(set("A.number", 1, "int", &number, sizeof number) == 9);
  CHECK_CALLS(
      "context.getCfm()\ncfm.getNode('A.number')\nnode.getType()\ncfm.releaseNode('A.number')\n"
      "cfm.setValue('A.number', '-5', 1)\n");
  CHECK(get("A.number", "int", &number, sizeof number) == C_RESULT_OK);
  CHECK(number == -12);
  CHECK(get("A.text", "str", text, sizeof text) == C_RESULT_OK);
  CHECK(strcmp(text, "abc") == 0);
  CHECK(get("A.text", "int", &number, sizeof number) == C_RESULT_PARAM);
  CHECK(get("A.none", "int", &number, sizeof number) == C_RESULT_NOT_INIT);
  context_calls();
}

static void test_observers(void) {
  void (*regist)(int, c_cfm_callback, void*) = c_cfm_regist_observer;
  void (*unregist)(int, c_cfm_callback) = c_cfm_unregist_observer;
  c_cfm_callback (*lookup)(int) = c_cfm_get_regist_observer_callback;
  char user[] = "user";

  context_add_instance(5, "A.1.");
  c_dbc_add_userdata(5, "A.1.", user);
  regist(5, on_change, user);
  CHECK(c_dbc_get_userdata(5, "A.1.") == NULL);
  CHECK(lookup(5) == on_change);
  CHECK(lookup(6) == NULL);
  CHECK(context_fire_change(5, "A.1.", 2, "leaf") == 32);
  CHECK(strcmp(told, "user 5 A.1. 2 leaf") == 0);
  unregist(5, on_change);
  CHECK(lookup(5) == NULL);
  context_calls();
}

static void test_cache(void) {
  void* (*create)(void) = c_dbc_create;
  void (*add)(int, const char*, void*) = c_dbc_add_userdata;
  void* (*get)(int, const char*) = c_dbc_get_userdata;
  void (*release)(int, const char*) = c_dbc_db_release;
  void (*release_all)(int) = c_dbc_db_release_all;
  void (*destroy)(void) = c_dbc_db_destory;
  int place = 0;

  CHECK(create() != NULL);
  add(5, "x", &place);
  add(5, "y", &place);
  CHECK(get(5, "x") == &place);
  release(5, "x");
  CHECK(get(5, "x") == NULL);
  CHECK(get(5, "y") == &place);
  release_all(5);
  CHECK(get(5, "y") == NULL);
  add(5, "x", &place);
  destroy();
  CHECK(get(5, "x") == NULL);
  CHECK_CALLS("");
}

static void test_end(void) {
  void (*deinit)(void) = c_context_deinit;

  deinit();
  CHECK_CALLS("relInstance(object)\n");
}

int main(void) {
  test_start();
  test_services();
  test_modules();
  test_watches();
  test_events();
  test_values();
  test_observers();
  test_cache();
  test_end();
  return failures == 0 ? 0 : 1;
}
