// SPDX-License-Identifier: MIT
#include "boot/product_config.h"

#include "binding/dll_mgr.h"
#include "boot/module.h"

namespace {

using Modules = std::map<IModule*, DllMgr*>;

// Calls `operation` of every module, whatever the others answer; gives the last answer that was not 0.
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
    // A library without a module stays open for good, as does one that yields a module already known: either
    // may have left something behind in the process when it was opened.
    if (module != nullptr) modules[module] = library;
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

// Modules are configured under one name, "cfmd", and unconfigured under another, "master", which they share
// with every other participant. The two differ in every product there is: do not make them equal.
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
