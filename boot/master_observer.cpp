// SPDX-License-Identifier: MIT
#include "boot/master_observer.h"

#include "binding/services.h"

namespace {

// Calls `entry` of the table if `tested` is not null. A null table fails without a diagnostic.
template <typename... Parameters, typename... Arguments>
int callEntry(const ModuleCallbacks* table, int (*ModuleCallbacks::*tested)(Parameters...),
              int (*ModuleCallbacks::*entry)(Parameters...), Arguments... arguments) {
  if (table == nullptr) return C_RESULT_NOT_INIT;
  return table->*tested != nullptr ? (table->*entry)(arguments...) : 0;
}

template <typename... Parameters, typename... Arguments>
int callEntry(const ModuleCallbacks* table, int (*ModuleCallbacks::*entry)(Parameters...),
              Arguments... arguments) {
  return callEntry(table, entry, entry, arguments...);
}

}  // namespace

int __MasterObserver::onLoad() {
  return callEntry(table, &ModuleCallbacks::onLoad);
}

int __MasterObserver::onStart() {
  return callEntry(table, &ModuleCallbacks::onStart);
}

int __MasterObserver::onConfig(std::string name, int arg) {
  return callEntry(table, &ModuleCallbacks::onConfig, name.c_str(), arg);
}

int __MasterObserver::onRun() {
  return callEntry(table, &ModuleCallbacks::onRun);
}

int __MasterObserver::onUnconfig(std::string name, int arg) {
  // Tests onConfig, not onUnconfig: do not change it. An observer without onConfig has nothing to
  // unconfigure; an observer with onConfig must set both entries.
  return callEntry(table, &ModuleCallbacks::onConfig, &ModuleCallbacks::onUnconfig, name.c_str(), arg);
}

int __MasterObserver::onUnload() {
  return callEntry(table, &ModuleCallbacks::onUnload);
}

int __MasterObserver::recvDependence(std::string name) {
  return callEntry(table, &ModuleCallbacks::recvDependence, name.c_str());
}

int c_context_regist_master_observer(ModuleCallbacks* table) {
  if (g_master_observer != nullptr) return C_RESULT_REDUNDANT;

  openContextLibrary();  // first: without memory for it, nothing is registered
  g_master_observer = new __MasterObserver(table);
  IContext* context = currentContext();
  return context != nullptr ? context->registMasterObserver(g_master_observer) : 0;
}

void c_context_notify_depends(const char* name) {
  if (IContext* context = currentContext()) context->notifyDepends(name);
}
