// SPDX-License-Identifier: MIT
// The only source of the host context that depends on the library's adapters. Calling them needs only their
// interfaces, but these do not tell a developer which C function an adapter calls.
#include "host/registration/callee.h"

#include <cstring>
#include <typeinfo>

#include "binding/cfm_observer.h"
#include "binding/data_provider.h"
#include "binding/event.h"
#include "binding/loop.h"
#include "binding/timer.h"
#include "boot/c_module.h"
#include "boot/master_observer.h"
#include "host/symbol/symbol.h"

namespace host {
namespace {

// Compares the names of types because the library does not export the types of its adapters.
template <typename Adapter, typename Interface>
const Adapter* adapterIn(const Interface& object, const char* type) {
  return std::strcmp(typeid(object).name(), type) == 0 ? static_cast<const Adapter*>(&object) : nullptr;
}

template <typename Function>
const void* addressOf(Function* function) {
  return reinterpret_cast<const void*>(function);
}

template <typename Adapter, typename Interface>
Callee calleeBehind(const Interface& object, const char* type) {
  const auto* adapter = adapterIn<Adapter>(object, type);
  if (adapter == nullptr) return {nullptr, nullptr, typeid(object).name()};
  return {addressOf(adapter->callback), adapter->user, nullptr};
}

const void* entryOf(const ModuleCallbacks& table, const std::string& operation) {
  if (operation == "onLoad") return addressOf(table.onLoad);
  if (operation == "onStart") return addressOf(table.onStart);
  if (operation == "onConfig") return addressOf(table.onConfig);
  if (operation == "onRun") return addressOf(table.onRun);
  if (operation == "onUnconfig") return addressOf(table.onUnconfig);
  if (operation == "onUnload") return addressOf(table.onUnload);
  if (operation == "recvDependence") return addressOf(table.recvDependence);
  return nullptr;  // the table has no function for onStop
}

Callee calleeIn(const ModuleCallbacks* table, const std::string& operation) {
  return {table != nullptr ? entryOf(*table, operation) : nullptr, nullptr, nullptr};
}

}  // namespace

Callee calleeOf(const ILoopData& handler) {
  return calleeBehind<__LoopData>(handler, "10__LoopData");
}

Callee calleeOf(const ITimer& timer) {
  const auto* adapter = adapterIn<__NtpTimerCB>(timer, "12__NtpTimerCB");
  if (adapter == nullptr) return {nullptr, nullptr, typeid(timer).name()};
  return {addressOf(adapter->callback), nullptr, nullptr};
}

Callee calleeOf(const IEventObserver& observer) {
  return calleeBehind<__EventC>(observer, "8__EventC");
}

Callee calleeOf(const ICfmObserver& observer) {
  return calleeBehind<__CfmC>(observer, "6__CfmC");
}

Callee calleeOf(const IDyncDataProvider& provider) {
  return calleeBehind<__DataProvider>(provider, "14__DataProvider");
}

Callee calleeOf(const IBootContext& participant, const std::string& operation) {
  if (const auto* module = adapterIn<__Module>(participant, "8__Module")) {
    return calleeIn(module->table, operation);
  }
  if (const auto* master = adapterIn<__MasterObserver>(participant, "16__MasterObserver")) {
    return calleeIn(master->table, operation);
  }
  return {nullptr, nullptr, typeid(participant).name()};
}

Symbol symbolOf(const Callee& callee) {
  if (callee.function != nullptr) return symbolAt(callee.function);
  return {callee.type != nullptr ? typeName(callee.type) : "nobody", "", ""};
}

}  // namespace host
