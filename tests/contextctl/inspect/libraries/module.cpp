// SPDX-License-Identifier: MIT
// A correct module.
#include "boot/module.h"
#include "tests/contextctl/inspect/libraries/entry_points.h"

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
