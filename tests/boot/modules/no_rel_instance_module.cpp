// SPDX-License-Identifier: MIT
// A library without "relInstance". It depends on no other that has one, for the loader would find that.
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
