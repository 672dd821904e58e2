// SPDX-License-Identifier: MIT
// One of the entry points lacks its C linkage.
#define EXPORTED __attribute__((visibility("default")))

EXPORTED void* getInstance(void* context);
extern "C" EXPORTED void relInstance(void* instance);

void* getInstance(void* context) {
  return context;
}

void relInstance(void*) {}
