// SPDX-License-Identifier: MIT
#include "binding/dll_mgr.h"

#include <cstdio>
#include <utility>

#include <dlfcn.h>

#include "binding/context.h"  // the complete type, so that the debug information describes it
#include "binding/globals.h"

namespace {

constexpr const char* kContextLibrary = "libcontext_proxy.so";

// Returns the function `name` of an opened library, or null.
template <typename Function>
Function* entryPoint(void* handle, const char* name) {
  return reinterpret_cast<Function*>(dlsym(handle, name));
}

}  // namespace

DllMgr::DllMgr(std::string library) : path(std::move(library)) {
  handle = dlopen(path.c_str(), RTLD_LAZY | RTLD_GLOBAL);
}

DllMgr::~DllMgr() {
  relInstance();
  if (handle != nullptr) dlclose(handle);
  handle = nullptr;
}

IContext* DllMgr::getInstance(IContext* ctx) {
  if (instance != nullptr || handle == nullptr) return instance;

  auto* get = entryPoint<IContext*(IContext*)>(handle, "getInstance");
  if (get != nullptr) instance = get(ctx);
  return instance;
}

void DllMgr::relInstance() {
  if (handle == nullptr) return;
  auto* release = entryPoint<void(IContext*)>(handle, "relInstance");
  if (release == nullptr) return;

  release(instance);
  // Calls dlerror() after "relInstance", not after dlsym(): it then also reports an error that occurred
  // within "relInstance" and would otherwise be lost.
  if (const char* error = dlerror()) std::fprintf(stderr, "dlsym: %s\n", error);
  instance = nullptr;
}

void openContextLibrary() {
  if (g_context_library == nullptr) g_context_library = new DllMgr(kContextLibrary);
}

IContext* getContext() {
  openContextLibrary();
  return g_context_library->getInstance(nullptr);
}

void releaseContext(IContext* /*ctx*/) {
  delete g_context_library;
  g_context_library = nullptr;
}
