// SPDX-License-Identifier: MIT
// The two functions through which the library libcpp2c opens the host context.
#include "host/host_context.h"

extern "C" {

__attribute__((visibility("default"))) void* getInstance(void* caller);
__attribute__((visibility("default"))) void relInstance(void* instance);

}  // extern "C"

// Creates a context, which the caller passes to relInstance() when it is done. The argument is not used.
void* getInstance(void* /*caller*/) {
  return static_cast<IContext*>(new host::HostContext);
}

// Accepts null.
void relInstance(void* instance) {
  delete static_cast<IContext*>(instance);
}
