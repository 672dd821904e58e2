// SPDX-License-Identifier: MIT
#include "boot/c_module.h"

#include "binding/result.h"

static_assert(sizeof(ModuleCallbacks) == 7 * sizeof(void (*)()), "C modules fill the table by position");

namespace {

// Calls an entry of the table. A null entry succeeds; a null table fails with a diagnostic.
template <typename... Parameters, typename... Arguments>
int callEntry(const char* operation, const ModuleCallbacks* table,
              int (*ModuleCallbacks::*entry)(Parameters...), Arguments... arguments) {
  if (table == nullptr) return failed(C_RESULT_NOT_INIT, operation);
  return table->*entry != nullptr ? (table->*entry)(arguments...) : 0;
}

}  // namespace

int __Module::onLoad() {
  return callEntry("onLoad", table, &ModuleCallbacks::onLoad);
}

int __Module::onStart() {
  return callEntry("onStart", table, &ModuleCallbacks::onStart);
}

int __Module::onConfig(std::string name, int arg) {
  return callEntry("onConfig", table, &ModuleCallbacks::onConfig, name.c_str(), arg);
}

int __Module::onRun() {
  return callEntry("onRun", table, &ModuleCallbacks::onRun);
}

int __Module::onUnconfig(std::string name, int arg) {
  return callEntry("onUnconfig", table, &ModuleCallbacks::onUnconfig, name.c_str(), arg);
}

int __Module::onUnload() {
  return callEntry("onUnload", table, &ModuleCallbacks::onUnload);
}

int __Module::recvDependence(std::string name) {
  return callEntry("recvDependence", table, &ModuleCallbacks::recvDependence, name.c_str());
}

void* c_module_regist(ModuleCallbacks* table) {
  return static_cast<IModule*>(new __Module(table));
}

void c_module_unregist(void* module) {
  delete static_cast<IModule*>(module);
}
