// SPDX-License-Identifier: MIT
#ifndef CPP2C_BOOT_MODULE_H
#define CPP2C_BOOT_MODULE_H

#include "boot/boot_context.h"

// A loadable module, handed out by the entry point "getInstance" of its library and taken back by the entry
// point "relInstance". It adds nothing to the lifecycle but a type of its own.
class CPP2C_API IModule : public IBootContext {
 public:
  ~IModule() override;
};

#endif
