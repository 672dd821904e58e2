// SPDX-License-Identifier: MIT
#ifndef CPP2C_BINDING_DATA_PROVIDER_H
#define CPP2C_BINDING_DATA_PROVIDER_H

#include "binding/handlers.h"
#include "include_c"

// Presents one C callback to the configuration service as the source of an object's computed values. Final
// because its interface has no virtual destructor: c_context_deinit() deletes it as what it is.
class __DataProvider final : public IDyncDataProvider {
 public:
  std::string dataGet(int id, std::string instance, std::string leaf) override;

  c_data_provider_callback callback = nullptr;
  void* user = nullptr;
  std::string result;  // the answer set last
};

#endif
