// SPDX-License-Identifier: MIT
#include "host/lifecycle/host_product.h"

#include <dlfcn.h>
#include <errno.h>

#include <cstddef>
#include <map>
#include <new>
#include <utility>

#include "binding/context.h"
#include "host/include/cpp2c_host.h"

namespace host {

HostProduct::HostProduct(IContext* owner, std::vector<std::string> names, ILog& log, Registry& registry)
    : IProductConfig(owner), names_(std::move(names)), log_(log), registry_(registry) {
  // Modules are called in the order of their addresses. Without reallocation, that is the order of the names.
  participants_.reserve(names_.size());
}

std::string HostProduct::productName() {
  return program_invocation_short_name;
}

void HostProduct::listLibraries() {
  libraries = {next_};
}

std::string HostProduct::productVersion() {
  return "";
}

int HostProduct::open() {
  if (!participants_.empty()) return C_RESULT_OK;

  try {
    return openModules();
  } catch (const std::bad_alloc&) {
    participants_.clear();
    release_modules();
    throw;
  }
}

int HostProduct::openModules() {
  std::vector<IModule*> opened;
  for (const std::string& name : names_) {
    IModule* module = openModule(name);
    if (module == nullptr) {
      release_modules();
      return C_RESULT_NOT_FOUND;
    }
    opened.push_back(module);
  }
  wrapModules(opened);
  return C_RESULT_OK;
}

// Opens one library at a time, to know which module it provides, or that it provides none.
IModule* HostProduct::openModule(const std::string& name) {
  const auto others = modules;
  next_ = name;
  dlerror();
  loadModules();
  for (const auto& [module, library] : modules) {
    if (others.count(module) == 0) return module;
  }
  logFailure(name);
  return nullptr;
}

void HostProduct::logFailure(const std::string& name) {
  const char* why = dlerror();
  const std::string text =
      why != nullptr ? why : name + ": getInstance() returned no module, or the module of another library";
  log_.record("lifecycle", C_LOG_ERROR, text.c_str());
}

// Puts a participant in the place of each module.
void HostProduct::wrapModules(const std::vector<IModule*>& opened) {
  std::map<IModule*, DllMgr*> wrapped;
  for (std::size_t i = 0; i < opened.size(); i++) {
    participants_.emplace_back(names_[i], opened[i], log_, registry_);
    wrapped.emplace(&participants_[i], modules[opened[i]]);
  }
  modules = std::move(wrapped);
}

}  // namespace host
