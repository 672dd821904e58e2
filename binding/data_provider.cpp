// SPDX-License-Identifier: MIT
#include "binding/data_provider.h"

#include "binding/services.h"
#include "binding/value_type.h"

std::string __DataProvider::dataGet(int id, std::string instance, std::string leaf) {
  if (callback == nullptr) return {};

  // `result` is not cleared first: if the callback sets no value, the previous value is returned again.
  callback(id, instance.c_str(), leaf.c_str(), user, this);
  return result;
}

void c_cfm_data_provider_regist(int id, c_data_provider_callback callback, void* user) {
  ICfm* cfm = currentCfm();
  if (cfm == nullptr) return;

  // Everything is allocated before the service is called: a registered provider is always listed.
  std::list<__DataProvider*> added;
  added.push_back(nullptr);
  __DataProvider* provider = added.front() = new __DataProvider;
  provider->callback = callback;
  provider->user = user;
  cfm->registDataProvider(id, provider);
  g_data_providers.splice(g_data_providers.end(), added);
}

void c_cfm_data_provider_set(void* handle, const char* type, char* data) {
  if (handle == nullptr) return;

  // A "bool" becomes a number here, unlike in c_cfm_set_value(), where it becomes "true" or "false".
  const ValueKind kind = valueKind(type);
  const bool is_number = kind == ValueKind::kWord || kind == ValueKind::kFlag;
  static_cast<__DataProvider*>(handle)->result = is_number ? WordText(loadWord(data)).c_str() : data;
}
