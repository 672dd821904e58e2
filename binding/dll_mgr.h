// SPDX-License-Identifier: MIT
// Opened shared libraries, and the process-wide context.
#ifndef CPP2C_BINDING_DLL_MGR_H
#define CPP2C_BINDING_DLL_MGR_H

#include <string>

#include "include_c"

class IContext;

// An opened shared library and the instance obtained from it.
//
// The shared library exports two C functions: `void* getInstance(void* context)` creates or returns its
// instance, and `void relInstance(void* instance)` releases it. relInstance() must accept null.
class CPP2C_API DllMgr {
 public:
  // Opens the shared library `path`, which is a path or a file name that the dynamic loader searches for.
  // Its symbols are available to libraries opened later. If it cannot be opened, getInstance() returns null.
  explicit DllMgr(std::string path);

  // Releases the instance and closes the library.
  ~DllMgr();

  DllMgr(const DllMgr&) = delete;
  DllMgr& operator=(const DllMgr&) = delete;

  // Returns the instance of the shared library, which owns it. If it has not been obtained yet, obtains it by
  // passing `ctx` to the library's "getInstance". Returns null if the library is not open, has no
  // "getInstance" or returns no instance. The instance of a module library is an IModule.
  IContext* getInstance(IContext* ctx);

  // Passes the instance to the library's "relInstance". Does nothing if there is no such function.
  void relInstance();

  // The instance, if it has already been obtained, otherwise null.
  IContext* obtained() const { return instance; }

 private:
  IContext* instance = nullptr;
  void* handle;
  std::string path;
};

// Opens "libcontext_proxy.so" unless it has been opened. A function that changes state before it gets the
// context calls this first, so that it changes nothing if memory runs out.
void openContextLibrary();

// Returns the process-wide context. The first call opens "libcontext_proxy.so". Returns null if that library
// cannot be opened or returns no instance. Not thread-safe.
CPP2C_API IContext* getContext();

// Releases the process-wide context and closes its library. The next getContext() opens it again. `ctx` is
// ignored.
CPP2C_API void releaseContext(IContext* ctx);

#endif
