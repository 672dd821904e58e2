// SPDX-License-Identifier: MIT
#ifndef CPP2C_BOOT_MASTER_OBSERVER_H
#define CPP2C_BOOT_MASTER_OBSERVER_H

#include "boot/boot_context.h"
#include "include_c"

// A participant that calls the main program's table of C functions. It does not override onStop(): the table
// has no entry for it.
class __MasterObserver : public IBootContext {
 public:
  explicit __MasterObserver(ModuleCallbacks* callbacks) : table(callbacks) {}

  int onLoad() override;
  int onStart() override;
  int onConfig(std::string name, int arg) override;
  int onRun() override;
  int onUnconfig(std::string name, int arg) override;
  int onUnload() override;
  int recvDependence(std::string name) override;

  ModuleCallbacks* table;  // owned by the caller
};

#endif
