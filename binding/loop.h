// SPDX-License-Identifier: MIT
#ifndef CPP2C_BINDING_LOOP_H
#define CPP2C_BINDING_LOOP_H

#include "binding/handlers.h"
#include "include_c"

// Adapter that calls a C callback for a watched descriptor. Owned by `g_fd_watches`.
class __LoopData : public ILoopData {
 public:
  int handler(short events, int value) override;

  c_loop_callback callback = nullptr;
  void* user = nullptr;
  int fd = -1;
};

#endif
