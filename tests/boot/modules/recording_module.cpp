// SPDX-License-Identifier: MIT
// A library with one recording module, named MODULE_NAME.
#include "tests/boot/modules/recording_module.h"

namespace {

// Records when the library is opened and closed.
class OpenModule : public RecordingModule {
 public:
  OpenModule() : RecordingModule(MODULE_NAME) { record("open"); }
  ~OpenModule() override { record("close"); }
};

OpenModule module;

}  // namespace

extern "C" {

CPP2C_API void* getInstance(void* caller);
CPP2C_API void relInstance(void* instance);

void* getInstance(void* caller) {
  module.asked_with = caller;
  module.record("getInstance", static_cast<const void*>(caller));
  return static_cast<IModule*>(&module);
}

void relInstance(void* instance) {
  module.record("relInstance", static_cast<const void*>(instance));
}
}
