// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_SUPPORT_OPENED_LIBRARY_H
#define CPP2C_TESTS_SUPPORT_OPENED_LIBRARY_H

#include <string>

#include <dlfcn.h>

// A shared library that a test keeps open.
class OpenedLibrary {
 public:
  explicit OpenedLibrary(const std::string& path) : handle_(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {}
  ~OpenedLibrary() { close(); }

  OpenedLibrary(const OpenedLibrary&) = delete;
  OpenedLibrary& operator=(const OpenedLibrary&) = delete;

  static bool isLoaded(const std::string& path) {
    void* handle = dlopen(path.c_str(), RTLD_LAZY | RTLD_NOLOAD);
    if (handle != nullptr) dlclose(handle);
    return handle != nullptr;
  }

  void close() {
    if (handle_ != nullptr) dlclose(handle_);
    handle_ = nullptr;
  }

  explicit operator bool() const { return handle_ != nullptr; }

  // Returns the address of the symbol `name`, or null.
  template <typename Symbol>
  Symbol* find(const char* name) const {
    return reinterpret_cast<Symbol*>(dlsym(handle_, name));
  }

 private:
  void* handle_;
};

#endif
