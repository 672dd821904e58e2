// SPDX-License-Identifier: MIT
#ifndef CPP2C_BOOT_C_MODULE_H
#define CPP2C_BOOT_C_MODULE_H

#include "boot/module.h"
#include "include_c"

// A module that calls a table of C functions. It does not override onStop(): the table has no entry for it.
class __Module : public IModule {
 public:
  explicit __Module(ModuleCallbacks* callbacks) : table(callbacks) {}

  int onLoad() override;
  int onStart() override;
  int onConfig(std::string name, int arg) override;
  int onRun() override;
  int onUnconfig(std::string name, int arg) override;
  int onUnload() override;
  int recvDependence(std::string name) override;

  void* reserved = nullptr;  // never read; keeps `table` at its offset
  ModuleCallbacks* table;    // owned by the caller
};

#endif
