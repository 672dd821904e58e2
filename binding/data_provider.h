// SPDX-License-Identifier: MIT
#ifndef CPP2C_BINDING_DATA_PROVIDER_H
#define CPP2C_BINDING_DATA_PROVIDER_H

#include "binding/handlers.h"
#include "include_c"

// Adapter that calls a C callback to compute the values of one object's computed leaves. The class is final
// because c_context_deinit() deletes it without a virtual destructor.
class __DataProvider final : public IDyncDataProvider {
 public:
  std::string dataGet(int id, std::string instance, std::string leaf) override;

  c_data_provider_callback callback = nullptr;
  void* user = nullptr;
  std::string result;  // the value set last
};

#endif
