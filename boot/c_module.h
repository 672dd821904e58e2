// SPDX-License-Identifier: MIT
#ifndef CPP2C_BOOT_C_MODULE_H
#define CPP2C_BOOT_C_MODULE_H

#include "boot/module.h"
#include "include_c"

// Presents a table of C functions as a module. The stop step stays the default: the table has no entry for
// it.
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

  void* reserved = nullptr;  // never read; it gives the table its place
  ModuleCallbacks* table;    // the caller's
};

#endif
