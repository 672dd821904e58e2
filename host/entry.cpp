// SPDX-License-Identifier: MIT
// The two entry points by which the context library is entered.
#include "host/host_context.h"

extern "C" {

__attribute__((visibility("default"))) void* getInstance(void* caller);
__attribute__((visibility("default"))) void relInstance(void* instance);

}  // extern "C"

// Each call makes a new context, which the caller gives back to relInstance(). Who calls does not matter.
void* getInstance(void* /*caller*/) {
  return static_cast<IContext*>(new HostContext);
}

// Takes null as well.
void relInstance(void* instance) {
  delete static_cast<IContext*>(instance);
}
