// SPDX-License-Identifier: MIT
#include "session.h"

#include <signal.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "cpp2c_host.h"
#include "include_c"
#include "session_client.h"

#define COUNTER "Device.Session.Counter"

enum { SESSION = 1, PORTS = 2, DBC = 9, SKIPPED = -9999 };

static int g_argc;
static char** g_argv;
static int g_report;
static int g_counter_known;  // whether the last write of the counter succeeded
static int g_timer_set;
static int g_pipe[2];

void session_start(int argc, char** argv, const char* control, int report) {
  g_argc = argc;
  g_argv = argv;
  g_report = report;
  client_start(control);
  if (syscall(SYS_pipe2, g_pipe, 0) != 0) _exit(3);
}

void session_report(const char* name, const char* result) {
  char line[256];
  const int length = snprintf(line, sizeof line, "%s %s\n", name, result);
  if (syscall(SYS_write, g_report, line, length) != length) _exit(3);
}

void session_report_number(const char* name, long result) {
  char number[32];
  snprintf(number, sizeof number, "%ld", result);
  session_report(name, number);
}

static int init(void) {
  return c_context_init((uintptr_t)g_argc, (uintptr_t)g_argv);
}

static int debug(void) {
  const int result = c_context_debug_switch(1);
  return result == C_RESULT_OK
             ? c_debug_out("session.c", 1, "debugging %s", "a long line of text, for the heap")
             : result;
}

// The counter in the saved state must be at least the last one that is reported as saved.
static int save(int counter) {
  session_report_number("saving", counter);
  g_counter_known = 0;
  const int written = c_cfm_set_value(COUNTER, 0, "int", &counter, sizeof counter);
  if (written != C_RESULT_OK) return written;
  g_counter_known = 1;
  const int saved = c_cfm_save_config();
  if (saved == C_RESULT_OK) session_report_number("saved", counter);
  return saved;
}

static int save_first(void) {
  return save(1);
}

static int save_last(void) {
  return save(4);
}

static int save_again(void) {
  const int saved = c_cfm_save_config();
  if (saved == C_RESULT_OK && g_counter_known) session_report("saved", "again");
  return saved;
}

static int changed(void* user, int object, const char* instance, int operation, const char* leaf) {
  (void)user, (void)object, (void)instance, (void)leaf;
  session_report_number("changed", operation);
  return C_RESULT_OK;
}

static int received(void* user, const char* event, const char* data, const char* source) {
  (void)user, (void)event, (void)source;
  session_report("received", data);
  return C_RESULT_OK;
}

static void compute(int object, const char* instance, const char* leaf, void* user, void* handle) {
  (void)object, (void)instance, (void)leaf, (void)user;
  char text[] = "a computed value that is longer than a short string";
  c_cfm_data_provider_set(handle, "str", text);
}

static int visit(int object, char* name, void* userdata, c_pass_fn3 pass_fn3, c_pass_fn4 pass_fn4,
                 void* arg) {
  (void)object, (void)userdata, (void)pass_fn3, (void)pass_fn4, (void)arg;
  session_report("visited", name);
  return 0;
}

static int observe_changes(void) {
  c_cfm_regist_observer(SESSION, changed, NULL);
  c_cfm_regist_observer(PORTS, changed, NULL);
  return c_cfm_get_regist_observer_callback(PORTS) == changed ? C_RESULT_OK : C_RESULT_NOT_FOUND;
}

static int observe_events(void) {
  c_event_regist_observer("session.event", received, NULL);
  c_event_regist_observer("session.other", received, NULL);
  c_event_unregist_observer("session.event", received);
  c_event_regist_observer("session.event", received, NULL);
  return C_RESULT_OK;
}

static int provide(void) {
  c_cfm_data_provider_regist(SESSION, compute, NULL);
  return C_RESULT_OK;
}

static void readable(void* user, short events, int fd) {
  (void)user, (void)events;
  char data[8];
  if (syscall(SYS_read, fd, data, sizeof data) > 0) session_report("readable", "once");
}

static int watch(void) {
  const int added = c_loop_add_fd(g_pipe[0], C_LOOP_READ, readable, NULL);
  return added == C_RESULT_OK ? c_loop_add_fd(g_pipe[0], C_LOOP_READ | C_LOOP_EDGE, readable, NULL) : added;
}

static int read_leaves(void) {
  char text[64] = "";
  int counter = 0;
  const int computed = c_cfm_get_value("Device.Session.Computed", "str", text, sizeof text);
  if (computed != C_RESULT_OK) return computed;
  return c_cfm_get_value_v2("Device.Session", "self", "Counter", "int", &counter, sizeof counter);
}

static int write_leaves(void) {
  const char* address = "2001:db8:0:1:2:3:4:5";
  const char* port = "Device.Ports.created.Address";
  const int created = c_cfm_set_value(port, C_CFM_CREATE, "ipaddr", address, 21);
  if (created != C_RESULT_OK) return created;
  const int flag = 1;
  return c_cfm_set_value_v2("Device.Ports.created.", "", "Enabled", "bool", &flag, sizeof flag, 0);
}

static int tick(void) {
  static int ticks;
  if (++ticks == 1000) _exit(4);  // the loop does not end
  session_report_number("tick", ticks);
  if (ticks == 1) {
    if (syscall(SYS_write, g_pipe[1], "x", 1) != 1) _exit(3);
    c_event_notify("session.event", "from the timer");
    session_report_number("written", write_leaves());
    session_report_number("save_ticking", save(2));
  }
  if (!client_next()) raise(SIGTERM);
  return 0;
}

static int set_timer(void) {
  const int result = c_context_set_timer(1000, 50, tick);
  g_timer_set = result == C_RESULT_OK;
  return result;
}

static int step_done(void) {
  return C_RESULT_OK;
}

static int configured(const char* name, int arg) {
  (void)arg;
  session_report("configured", name);
  return strcmp(name, "master") == 0 ? C_RESULT_OK : 100;
}

static int notified(const char* name) {
  session_report("notified", name);
  return C_RESULT_OK;
}

static ModuleCallbacks g_master = {step_done,  step_done, configured, step_done,
                                   configured, step_done, notified};

static int observe_steps(void) {
  return c_context_regist_master_observer(&g_master);
}

static int run(void) {
  return g_timer_set ? c_loop_run() : SKIPPED;
}

static int notify(void) {
  c_event_notify("session.event", "from the session, with a long text");
  c_context_notify_depends("a dependence with a long name");
  return C_RESULT_OK;
}

static int hold_heartbeat(void) {
  const int locked = c_heartbeat_lock();
  return locked == C_RESULT_OK ? c_heartbeat_unlock() : locked;
}

static int log_records(void) {
  c_log_record("session", C_LOG_WARNING, "a record of the session: %d", 1);
  c_log_record("session", C_LOG_INFO, "another record of the session: %d", 2);
  return C_RESULT_OK;
}

static int run_command(void) {
  return c_system_call("true %s", "with an argument") > 0 ? C_RESULT_OK : C_RESULT_SYSTEM_CALL;
}

static int run_command2(void) {
  char command[] = "exit %d";
  const int result = c_system_call2(command, 3);
  return result == 3 ? C_RESULT_OK : result;
}

static int run_popen(void) {
  char command[] = "echo a line; echo another line of %s";
  return c_popen_call(command, "the command");
}

static int attributes(void) {
  int attribute = 0;
  const int set = c_cfm_set_attr(SESSION, 7);
  return set == C_RESULT_OK ? c_cfm_get_attr(SESSION, &attribute) : set;
}

static int names(void) {
  char name[64] = "";
  int flag = 0;
  const int parent = c_cfm_get_parent_name("Device.Ports.created.Address", name, sizeof name);
  if (parent != C_RESULT_OK) return parent;
  const int grand = c_cfm_get_grand_name("Device.Ports.created.Address", name, sizeof name);
  return grand == C_RESULT_OK ? c_cfm_str2bool("true", &flag) : grand;
}

static int memory(void) {
  char* block = c_malloc(100, __FILE__, __LINE__);
  const int result = block != NULL ? C_RESULT_OK : C_RESULT_NO_MEMORY;
  c_free(block);
  return result;
}

static int references(void) {
  reference_increase("Device.Ports.created.Address");
  return reference_decrease("Device.Ports.created.Address");
}

static int instances(void) {
  return c_cfm_lookup_instance(PORTS, visit, NULL, NULL, NULL);
}

static int cache(void) {
  c_dbc_create();
  c_dbc_add_userdata(DBC, "an instance with a long name", &g_argc);
  c_dbc_add_userdata(DBC, "another instance with a long name", NULL);
  c_dbc_lookup(DBC, visit, NULL, NULL, NULL);
  const int found = c_dbc_get_userdata(DBC, "an instance with a long name") == &g_argc;
  c_dbc_db_release(DBC, "an instance with a long name");
  c_dbc_db_release_all(DBC);
  return found ? C_RESULT_OK : C_RESULT_NOT_FOUND;
}

static int unregister(void) {
  c_loop_del_fd(g_pipe[0]);
  c_cfm_unregist_observer(PORTS, changed);
  c_event_unregist_observer("session.event", received);
  return C_RESULT_OK;
}

static int module(void) {
  void* object = c_module_regist(&g_master);
  c_module_unregist(object);
  return C_RESULT_OK;
}

static int deinit(void) {
  c_context_deinit();
  c_dbc_db_destory();
  return C_RESULT_OK;
}

static int read_counter(void) {
  int counter = 0;
  const int result = c_cfm_get_value(COUNTER, "int", &counter, sizeof counter);
  if (result == C_RESULT_OK) session_report_number("counter", counter);
  return result;
}

const session_step_t kSessionSteps[] = {
    {"init", init},
    {"debug", debug},
    {"save_first", save_first},
    {"observe_changes", observe_changes},
    {"observe_events", observe_events},
    {"provide", provide},
    {"watch", watch},
    {"read_leaves", read_leaves},
    {"observe_steps", observe_steps},
    {"set_timer", set_timer},
    {"load", c_context_load},
    {"run", run},
    {"notify", notify},
    {"hold_heartbeat", hold_heartbeat},
    {"log_records", log_records},
    {"run_command", run_command},
    {"run_command2", run_command2},
    {"run_popen", run_popen},
    {"attributes", attributes},
    {"names", names},
    {"memory", memory},
    {"references", references},
    {"instances", instances},
    {"cache", cache},
    {"module", module},
    {"save_last", save_last},
    {"save_again", save_again},
    {"unregister", unregister},
    {"deinit", deinit},
    {NULL, NULL},
};

const session_step_t kSessionService[] = {
    {"init", init},
    {"provide", provide},
    {"observe_events", observe_events},
    {"load", c_context_load},
    {"run", c_loop_run},
    {"deinit", deinit},
    {NULL, NULL},
};

const session_step_t kSessionCheck[] = {
    {"init", init},
    {"read_counter", read_counter},
    {"deinit", deinit},
    {NULL, NULL},
};
