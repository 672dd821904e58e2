// SPDX-License-Identifier: MIT
// Start, loop and teardown. Includes every adapter's header because c_context_deinit() deletes them.
#include "binding/cfm_observer.h"
#include "binding/data_provider.h"
#include "binding/event.h"
#include "binding/loop.h"
#include "binding/result.h"
#include "binding/services.h"
#include "boot/master_observer.h"

namespace {

template <typename Adapter>
void deleteAll(std::list<Adapter*>& adapters) {
  for (Adapter* adapter : adapters) delete adapter;
  adapters.clear();
}

void deleteAll(std::map<int, __LoopData*>& watches) {
  for (const auto& [fd, watch] : watches) delete watch;
  watches.clear();
}

}  // namespace

int c_context_init(uintptr_t arg1, uintptr_t arg2) {
  IContext* context = currentContext();
  c_dbc_create();  // even without a context: the cache needs none
  if (context == nullptr) return refuse(C_RESULT_NOT_INIT, "NOT INITED! ERROR!");
  return context->init(arg1, arg2);
}

int c_context_load() {
  IContext* context = currentContext();
  return context != nullptr ? context->load() : 0;
}

int c_loop_run() {
  ILoop* loop = currentLoop();
  return loop != nullptr ? loop->run() : 0;
}

int c_context_debug_switch(int value) {
  IContext* context = currentContext();
  return context != nullptr ? context->debugSwitch(value) : 0;
}

int c_heartbeat_lock() {
  IHeartbeat* heartbeat = currentHeartbeat();
  return heartbeat != nullptr ? heartbeat->lock() : 0;
}

int c_heartbeat_unlock() {
  IHeartbeat* heartbeat = currentHeartbeat();
  return heartbeat != nullptr ? heartbeat->unlock() : 0;
}

int c_cfm_save_config() {
  ICfm* cfm = currentCfm();
  return cfm != nullptr ? cfm->save(1) : 0;
}

void c_context_deinit() {
  // The adapters are not unregistered first: the context is released next and calls them no more. The
  // reference counts and the timer adapter remain until the library is unloaded.
  deleteAll(g_cfm_observers);
  deleteAll(g_event_observers);
  deleteAll(g_fd_watches);
  deleteAll(g_data_providers);
  delete g_master_observer;
  g_master_observer = nullptr;
  releaseContext(nullptr);
  c_dbc_db_destory();
}
