// SPDX-License-Identifier: MIT
#ifndef CPP2C_FUZZ_CALLS_PROVIDERS_H
#define CPP2C_FUZZ_CALLS_PROVIDERS_H

#include <string>
#include <vector>

#include "fuzz/calls/bridge.h"

template <int N>
void onRequest(int id, const char* instance, const char* leaf, void* user, void* handle);

// Data providers.
class Providers {
 public:
  explicit Providers(Bridge& bridge) : bridge_(bridge) { current = this; }
  ~Providers() { current = nullptr; }
  Providers(const Providers&) = delete;
  Providers& operator=(const Providers&) = delete;

  static inline Providers* current = nullptr;  // for the callbacks, which are plain functions

  void add() {
    const int id = bridge_.input.oneOf(kIds);
    const auto function = static_cast<int>(bridge_.input.below(3));
    void* user = bridge_.anyUser();
    const Bridge::Scope scope(bridge_, "c_cfm_data_provider_regist()");
    const bool reached = bridge_.reachService("getCfm");
    if (reached) bridge_.expect("cfm.registDataProvider(" + std::to_string(id) + ", object)");
    c_cfm_data_provider_regist(id, kFunctions[function], user);
    if (reached) providers_.push_back({function, user, bridge_.proxy.context.cfm.providers.back(), ""});
  }

  void request() {
    const std::size_t choice = bridge_.input.below(256);
    const int id = bridge_.input.word();
    const std::string instance = bridge_.input.bytes();
    const std::string leaf = bridge_.input.bytes();
    if (providers_.empty()) return;
    const Bridge::Scope scope(bridge_, "a data provider");
    const std::size_t index = choice % providers_.size();
    const Provider provider = providers_[index];  // a copy, because the callback may add providers
    const bool calls = kFunctions[provider.function] != nullptr;
    const std::string callback =
        calls ? described(std::string("request"), provider.function, id, std::string(instance.c_str()),
                          std::string(leaf.c_str()), provider.user, static_cast<void*>(provider.adapter))
              : "";
    const std::string value =
        bridge_.expectCallback(callback, [&] { return provider.adapter->dataGet(id, instance, leaf); });
    requireEqual(value, calls ? providers_[index].value : "", "a computed value");
  }

  // To be called by the callback after its other steps: sets a value, or leaves the previous one.
  void answer(void* handle) {
    const unsigned int choice = bridge_.input.below(4);
    std::string text = bridge_.input.text();
    if (choice == 0) c_cfm_data_provider_set(nullptr, "str", text.data());
    if (choice <= 1) return;
    c_cfm_data_provider_set(handle, "str", text.data());
    for (Provider& provider : providers_) {
      if (provider.adapter == handle) provider.value = text;
    }
  }

  void clearInModel() { providers_.clear(); }

 private:
  struct Provider {
    int function;
    void* user;
    IDyncDataProvider* adapter;
    std::string value;  // set last
  };

  static constexpr c_data_provider_callback kFunctions[] = {onRequest<0>, onRequest<1>, nullptr};

  Bridge& bridge_;
  std::vector<Provider> providers_;
};

template <int N>
void onRequest(int id, const char* instance, const char* leaf, void* user, void* handle) {
  Bridge::current->called(described(std::string("request"), N, id, std::string(instance), std::string(leaf),
                                    user, static_cast<const void*>(handle)));
  Providers::current->answer(handle);
}

#endif
