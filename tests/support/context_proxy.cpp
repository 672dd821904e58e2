// SPDX-License-Identifier: MIT
#include "tests/support/context_proxy.h"

#include <memory>

namespace {

std::unique_ptr<ContextProxy>& current() {
  static auto proxy = std::make_unique<ContextProxy>();
  return proxy;
}

}  // namespace

ContextProxy& contextProxy() {
  return *current();
}

ContextProxy& renewContextProxy() {
  current() = std::make_unique<ContextProxy>();
  return *current();
}

void* getInstance(void* caller) {
  contextProxy().calls.record("getInstance", caller);
  return contextProxy().instance;
}

void relInstance(void* instance) {
  contextProxy().released.push_back(instance);
  contextProxy().calls.record("relInstance", instance);
}
