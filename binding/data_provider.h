// SPDX-License-Identifier: MIT
#ifndef CPP2C_BINDING_DATA_PROVIDER_H
#define CPP2C_BINDING_DATA_PROVIDER_H

#include "binding/handlers.h"

// Presents one C callback to the configuration service as the source of an object's computed values. Final
// because its interface has no virtual destructor: c_context_deinit() deletes it as what it is.
class __DataProvider final : public IDyncDataProvider {
 public:
  std::string dataGet(int id, std::string instance, std::string leaf) override;

  void (*callback)(int id, const char* instance, const char* leaf, void* user, void* handle) = nullptr;
  void* user = nullptr;
  std::string result;  // the answer set last
};

#endif
