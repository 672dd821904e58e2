// SPDX-License-Identifier: MIT
#ifndef CPP2C_BOOT_MODULE_H
#define CPP2C_BOOT_MODULE_H

#include "boot/boot_context.h"

// A loadable module. The entry point "getInstance" of its library returns it, and the entry point
// "relInstance" releases it.
class CPP2C_API IModule : public IBootContext {
 public:
  ~IModule() override;
};

#endif
