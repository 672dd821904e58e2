// SPDX-License-Identifier: MIT
#ifndef CPP2C_BINDING_CFM_OBSERVER_H
#define CPP2C_BINDING_CFM_OBSERVER_H

#include "binding/handlers.h"
#include "include_c"

// Adapter that calls a C callback for the changes of one configuration object.
class __CfmC : public ICfmObserver {
 public:
  int update(int object, std::string instance, int operation, std::string leaf) override;

  int id = 0;
  void* user = nullptr;
  c_cfm_callback callback = nullptr;
};

#endif
