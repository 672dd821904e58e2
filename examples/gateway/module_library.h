// SPDX-License-Identifier: MIT
// Makes a service a module library. Each is built with module_library.c, which has the two functions by which
// the framework enters it, takes the service through its lifecycle and logs each step.
#ifndef GATEWAY_MODULE_LIBRARY_H
#define GATEWAY_MODULE_LIBRARY_H

struct service {
  const char* name;       // in the log
  int (*prepare)(void);   // what needs no configuration; may be NULL
  int (*start)(void);     // reads the configuration; on failure nothing need be left to stop
  int (*run)(void);       // everything is configured; may be NULL
  void (*stop)(void);     // takes start() and run() back, done or not
  void (*refresh)(void);  // the interfaces must be looked at anew
};

// The service of this library.
extern const struct service g_service;

__attribute__((visibility("default"))) void* getInstance(void* context);
__attribute__((visibility("default"))) void relInstance(void* module);

#endif
