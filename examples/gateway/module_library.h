// SPDX-License-Identifier: MIT
// Turns a service into a module library. module_library.c is a part of each of these libraries: it defines
// the two functions that the framework calls, takes the service through the lifecycle and logs each step.
#ifndef GATEWAY_MODULE_LIBRARY_H
#define GATEWAY_MODULE_LIBRARY_H

struct service {
  const char* name;       // used in the log
  int (*prepare)(void);   // does what needs no configuration; may be NULL
  int (*start)(void);     // reads the configuration; stop() is called even after a failure
  int (*run)(void);       // starts work when all modules are configured; may be NULL
  void (*stop)(void);     // reverses start() and run(), whether they were called or not
  void (*refresh)(void);  // checks all interfaces again
};

// The service in this library.
extern const struct service g_service;

__attribute__((visibility("default"))) void* getInstance(void* context);
__attribute__((visibility("default"))) void relInstance(void* module);

#endif
