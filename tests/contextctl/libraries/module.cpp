// SPDX-License-Identifier: MIT
// A module as it should be.
#include "boot/module.h"
#include "tests/contextctl/libraries/entry_points.h"

namespace {

class Module : public IModule {
 public:
  int onLoad() override { return 1; }
};

}  // namespace

void* getInstance(void*) {
  return new Module;
}

void relInstance(void* instance) {
  delete static_cast<Module*>(instance);
}
