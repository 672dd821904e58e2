// SPDX-License-Identifier: MIT
// A library without "relInstance". It must not depend on a library that has one: dlsym() would find it.
#include "boot/module.h"

namespace {

class QuietModule : public IModule {
 public:
  int onLoad() override { return -21; }
};

QuietModule module;

}  // namespace

extern "C" {

CPP2C_API void* getInstance(void* caller);

void* getInstance(void* /*caller*/) {
  return static_cast<IModule*>(&module);
}
}
