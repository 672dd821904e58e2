// SPDX-License-Identifier: MIT
// Opened libraries, and the one that the context comes from.
#ifndef CPP2C_BINDING_DLL_MGR_H
#define CPP2C_BINDING_DLL_MGR_H

#include <string>

#include "include_c"

class IContext;

// One opened library and the one instance obtained from it.
//
// The library exports two C functions: `void* getInstance(void* context)` creates or returns its instance,
// and `relInstance(void* instance)` releases it; the latter must accept null.
class CPP2C_API DllMgr {
 public:
  // Opens the library `path`, a file name that the dynamic loader looks up or a path, and makes its symbols
  // available to libraries opened later. A failure is not reported: getInstance() then returns null.
  explicit DllMgr(std::string path);

  // Releases the instance and closes the library.
  ~DllMgr();

  DllMgr(const DllMgr&) = delete;
  DllMgr& operator=(const DllMgr&) = delete;

  // Returns the library's instance, which the library owns. Asks the library once, handing it `ctx`, and
  // remembers the answer; null if the library is not open or has no "getInstance". The instance of a module
  // library is an IModule.
  IContext* getInstance(IContext* ctx);

  // Hands the instance back through the library's "relInstance"; does nothing if there is no such function.
  void relInstance();

  // The instance obtained already, or null.
  IContext* obtained() const { return instance; }

 private:
  IContext* instance = nullptr;
  void* handle;
  std::string path;
};

// Returns the process-wide context, opening "libcontext_proxy.so" at the first call; null if that library
// cannot be opened or yields no instance. Not safe against a first call from two threads at once.
CPP2C_API IContext* getContext();

// Releases the process-wide context and closes its library. A later getContext() opens it afresh. `ctx` is
// ignored.
CPP2C_API void releaseContext(IContext* ctx);

#endif
