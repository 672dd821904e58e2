// SPDX-License-Identifier: MIT
#include "boot/product_config.h"

#include <memory>

#include "binding/dll_mgr.h"
#include "boot/module.h"

namespace {

using Modules = std::map<IModule*, DllMgr*>;

// Calls `operation` of every module, even if one fails. Returns the last result other than 0, or 0.
template <typename... Arguments>
int fanOut(const Modules& modules, int (IBootContext::*operation)(Arguments...),
           const Arguments&... arguments) {
  int result = 0;
  for (const auto& [module, library] : modules) {
    if (module == nullptr || library == nullptr) continue;
    const int answer = (module->*operation)(arguments...);
    if (answer != 0) result = answer;
  }
  return result;
}

}  // namespace

IProductConfig::IProductConfig(IContext* owner) : context(owner) {}

IProductConfig::~IProductConfig() {
  release_modules();
}

void IProductConfig::loadModules() {
  listLibraries();
  for (const std::string& name : libraries) {
    auto* library = new DllMgr(name);
    auto* module = reinterpret_cast<IModule*>(library->getInstance(context));
    // If a library returns no module or an already known module, its DllMgr is not deleted: the library must
    // stay open, because the process may already use something from it.
    if (module == nullptr) continue;
    std::unique_ptr<DllMgr> owner(library);  // closes the library if it cannot be recorded
    DllMgr*& entry = modules[module];
    entry = owner.release();
  }
}

void IProductConfig::release_modules() {
  for (const auto& [module, library] : modules) {
    if (library == nullptr) continue;
    library->relInstance();
    delete library;
  }
  modules.clear();
}

int IProductConfig::onLoad() {
  return fanOut(modules, &IBootContext::onLoad);
}

int IProductConfig::onStart() {
  return fanOut(modules, &IBootContext::onStart);
}

// onConfig() reaches the modules for "cfmd", onUnconfig() for "master". The difference is intended, and
// existing products depend on it: do not make the names equal.
int IProductConfig::onConfig(std::string name, int arg) {
  return name == "cfmd" ? fanOut(modules, &IBootContext::onConfig, name, arg) : kNotForMe;
}

int IProductConfig::onRun() {
  return fanOut(modules, &IBootContext::onRun);
}

int IProductConfig::onUnconfig(std::string name, int arg) {
  return name == "master" ? fanOut(modules, &IBootContext::onUnconfig, name, arg) : kNotForMe;
}

int IProductConfig::onUnload() {
  return fanOut(modules, &IBootContext::onUnload);
}

int IProductConfig::recvDependence(std::string name) {
  fanOut(modules, &IBootContext::recvDependence, name);
  return 0;
}
