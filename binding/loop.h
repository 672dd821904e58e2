// SPDX-License-Identifier: MIT
#ifndef CPP2C_BINDING_LOOP_H
#define CPP2C_BINDING_LOOP_H

#include "binding/handlers.h"
#include "include_c"

// Presents one C callback to the loop. The watch map owns it from c_loop_add_fd() to c_loop_del_fd().
class __LoopData : public ILoopData {
 public:
  int handler(short events, int value) override;

  c_loop_callback callback = nullptr;
  void* user = nullptr;
  int fd = -1;
};

#endif
