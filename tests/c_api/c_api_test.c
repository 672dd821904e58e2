/* SPDX-License-Identifier: MIT */
/*
 * The whole C interface, used from C. Each function is called through a pointer of its documented type, so
 * that a changed signature does not compile.
 */
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include "include_c"
#include "tests/c_api/callbacks.h"
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

static const char whole_lifecycle[] = "load;start;config cfmd 1;run;dependence net;unconfig cfmd 2;unload;";

static void test_modules(void) {
  void* (*regist)(ModuleCallbacks*) = c_module_regist;
  void (*unregist)(void*) = c_module_unregist;
  void* module = regist(&lifecycle);

  CHECK(drive_lifecycle(module) == 127);
  CHECK(was_told(whole_lifecycle));
  unregist(module);
  unregist(NULL);
  CHECK_CALLS("");
}

static void test_master_observer(void) {
  int (*regist)(ModuleCallbacks*) = c_context_regist_master_observer;
  void (*notify)(const char*) = c_context_notify_depends;

  context_set_result("context.registMasterObserver", 5);
  CHECK(regist(&lifecycle) == 5);
  CHECK(drive_lifecycle(context_master_observer()) == 127);
  CHECK(was_told(whole_lifecycle));
  notify("net");
  CHECK_CALLS("context.registMasterObserver(object)\ncontext.notifyDepends('net')\n");
}

static void test_watches(void) {
  int (*add)(int, int, c_loop_callback, void*) = c_loop_add_fd;
  void (*del)(int) = c_loop_del_fd;
  char user[] = "user";

  context_set_result("loop.addFd", 5);
  CHECK(add(7, 1, on_ready, user) == 5);
  CHECK(context_fire_watch(2, 7) == 0);
  CHECK(was_told("user 2 7;"));
  del(7);
  CHECK_CALLS("context.getLoop()\nloop.addFd(7, 1, object)\ncontext.getLoop()\nloop.delFd(7)\n");
}

static void test_timer(void) {
  int (*set)(int, int, c_timer_callback) = c_context_set_timer;

  context_set_result("context.setTimer", 5);
  CHECK(set(100, 200, on_timer) == 5);
  CHECK(context_fire_timer(7) == 30);
  CHECK(was_told("timer;"));
  CHECK_CALLS("context.setTimer(100, 0, 200, object)\n");
}

static void test_events(void) {
  void (*regist)(const char*, c_event_callback, void*) = c_event_regist_observer;
  void (*unregist)(const char*, c_event_callback) = c_event_unregist_observer;
  void (*notify)(const char*, const char*) = c_event_notify;
  char user[] = "user";

  regist("link", on_event, user);
  CHECK(context_fire_event("link", "up", "kernel") == 31);
  CHECK(was_told("user link up kernel;"));
  notify("link", "down");
  unregist("link", on_event);
  CHECK_CALLS(
      "context.getEvent()\nevent.registObserver('link', object)\n"
      "context.getEvent()\nevent.notify('link', 'down', 0)\n"
      "context.getEvent()\nevent.unregistObserver('link', object)\n");
}

static void test_processes(void) {
  int (*call)(const char*, ...) = c_system_call;
  int (*call2)(char*, ...) = c_system_call2;
  int (*open)(char*, ...) = c_popen_call;
  void (*record)(const char*, int, const char*, ...) = c_log_record;
  char format[] = "echo %d";

  CHECK(call("echo %s", "x") == (int)strlen("cmd:echo x\r\n"));
  context_set_result("context.systemCall2", 5);
  CHECK(call2(format, 2) == 5);
  context_set_result("context.popenCall", 6);
  CHECK(open(format, 3) == 6);
  record("module", 4, "text %d", 4);
  CHECK_CALLS(
      "context.systemCall('echo x')\ncontext.systemCall2('echo 2')\ncontext.popenCall('echo 3')\n"
      "context.getLog()\nlog.record('module', 4, 'text 4')\n");
}

static void test_memory(void) {
  char* (*allocate)(unsigned int, const char*, int) = c_malloc;
  void (*release)(char*) = c_free;
  static const char zeros[100];
  char* block = allocate(sizeof zeros, __FILE__, __LINE__);

  CHECK(block != NULL && memcmp(block, zeros, sizeof zeros) == 0);
  release(block);
  release(NULL);
  CHECK_CALLS("");
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

static void test_names(void) {
  int (*parent)(const char*, char*, unsigned int) = c_cfm_get_parent_name;
  int (*grand)(const char*, char*, unsigned int) = c_cfm_get_grand_name;
  int (*cut)(char*) = c_cfm_parent_fullname;
  char buffer[16];
  char name[] = "A.B.C";

  CHECK(parent("A.B.C", buffer, sizeof buffer) == C_RESULT_OK);
  CHECK(strcmp(buffer, "A.B.") == 0);
  CHECK(grand("A.B.C.D", buffer, sizeof buffer) == C_RESULT_OK);
  CHECK(strcmp(buffer, "A.B.") == 0);
  CHECK(cut(name) == C_RESULT_OK);
  CHECK(strcmp(name, "A.B") == 0);
  CHECK(cut(name) == C_RESULT_OK);
  CHECK(cut(name) == C_RESULT_NOT_FOUND);
  CHECK(strcmp(name, "A") == 0);
  CHECK(cut(NULL) == C_RESULT_PARAM);
  CHECK_CALLS(
      "context.debugOut('framework/inc/include_c', 'c_cfm_parent_fullname: Leave: not find!\n')\n"
      "context.debugOut('framework/inc/include_c', 'c_cfm_parent_fullname: Leave: param error!\n')\n");
}

static void test_relative_values(void) {
  int (*set)(const char*, const char*, const char*, const char*, const void*, unsigned int, int) =
      c_cfm_set_value_v2;
  int (*get)(const char*, const char*, const char*, const char*, void*, unsigned int) = c_cfm_get_value_v2;
  int32_t number = -5;

  context_set_leaf("A.x", "int", "-12");
  context_set_result("cfm.setValue", 9);
  CHECK(set("A.B.C", "PARENT.PARENT.", "x", "int", &number, sizeof number, 3) == 9);
  CHECK_CALLS(
      "context.getCfm()\ncfm.getNode('A.x')\nnode.getType()\ncfm.releaseNode('A.x')\n"
      "cfm.setValue('A.x', '-5', 3)\n");
  CHECK(get("A.", "", "x", "int", &number, sizeof number) == C_RESULT_OK);
  CHECK(number == -12);
  context_calls();
}

static void test_instances(void) {
  int (*lookup)(int, c_visit_callback, c_pass_fn3, c_pass_fn4, void*) = c_cfm_lookup_instance;
  char arg[] = "arg";

  context_add_instance(8, "A.8.");
  context_set_result("cfm.releaseIterator", 5);
  CHECK(lookup(8, on_visit, pass3, pass4, arg) == 5);
  CHECK(was_told("visit 8 A.8. none;pass3 8 A.8. data;pass4 8 A.8. data arg;"));
  context_calls();
}

static void test_attributes(void) {
  int (*set)(int, int) = c_cfm_set_attr;
  int (*get)(int, void*) = c_cfm_get_attr;
  int value = 0;

  context_set_result("cfm.setAttr", 5);
  CHECK(set(1, 2) == 5);
  context_set_result("cfm.getAttr", 6);
  CHECK(get(3, &value) == 6);
  CHECK_CALLS("context.getCfm()\ncfm.setAttr(1, 2)\ncontext.getCfm()\ncfm.getAttr(3, object)\n");
}

static void test_reference_counts(void) {
  int (*increase)(const char*) = reference_increase;
  int (*decrease)(const char*) = reference_decrease;

  CHECK(increase("A.1.") == 1);
  CHECK(decrease("A.1.") == 0);
  CHECK(decrease("A.1.") == 0);
  CHECK_CALLS(
      "context.debugOut('cpp2c', '-----str=A.1.,count=1')\n"
      "context.debugOut('cpp2c', '-----str2=A.1.,count=0')\n"
      "context.debugOut('cpp2c', '-----str2=A.1.,count=0')\n");
}

static void test_provider(void) {
  void (*regist)(int, c_data_provider_callback, void*) = c_cfm_data_provider_regist;
  char user[] = "user";

  regist(5, on_request, user);
  CHECK(strcmp(context_ask_provider(5, "A.1.", "leaf"), "computed") == 0);
  CHECK(was_told("5 A.1. leaf user;"));
  CHECK_CALLS("context.getCfm()\ncfm.registDataProvider(5, object)\n");
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
  CHECK(was_told("user 5 A.1. 2 leaf;"));
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
  void (*lookup)(int, c_visit_callback, c_pass_fn3, c_pass_fn4, void*) = c_dbc_lookup;
  void (*destroy)(void) = c_dbc_db_destory;
  char place[] = "place";

  CHECK(create() != NULL);
  add(5, "x", place);
  add(5, "y", place);
  CHECK(get(5, "x") == place);
  release(5, "x");
  CHECK(get(5, "x") == NULL);
  CHECK(get(5, "y") == place);
  lookup(5, on_visit, pass3, pass4, place);
  CHECK(was_told("visit 5 y place;pass3 5 y data;pass4 5 y data place;"));
  release_all(5);
  CHECK(get(5, "y") == NULL);
  add(5, "x", place);
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
  test_master_observer();
  test_watches();
  test_timer();
  test_events();
  test_processes();
  test_memory();
  test_values();
  test_names();
  test_relative_values();
  test_instances();
  test_attributes();
  test_reference_counts();
  test_observers();
  test_provider();
  test_cache();
  test_end();
  return failures == 0 ? 0 : 1;
}
