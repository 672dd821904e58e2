// SPDX-License-Identifier: MIT
#include "host/lifecycle/participant.h"

#include <utility>

#include "binding/context.h"
#include "host/include/cpp2c_host.h"

namespace host {
namespace {

constexpr const char* kOperations[] = {"onLoad",     "onStart", "onConfig", "onRun",
                                       "onUnconfig", "onStop",  "onUnload", "recvDependence"};

}  // namespace

Participant::Participant(std::string name, IBootContext* boot, ILog& log, Registry& registry)
    : name_(std::move(name)), boot_(boot), log_(log) {
  for (const char* operation : kOperations) {
    const Callee callee = calleeOf(*boot, operation);
    if (callee.isEmpty()) continue;
    steps_.emplace(operation, registry.add(RegistrationKind::kModule, name_ + ' ' + operation, callee));
  }
}

template <typename Function>
int Participant::call(const char* operation, Function function) {
  auto step = steps_.find(operation);
  return step != steps_.end() ? step->second.call(function).value_or(C_RESULT_SYSTEM_CALL) : function();
}

int Participant::check(const char* operation, int result) {
  if (result >= 0) return C_RESULT_OK;
  const std::string text = std::string(operation) + " of " + name_ + " failed: " + std::to_string(result);
  log_.record("lifecycle", C_LOG_ERROR, text.c_str());
  return result;
}

template <typename Function>
int Participant::advanceTo(State state, const char* operation, Function function) {
  const int result = check(operation, call(operation, function));
  if (result == C_RESULT_OK) state_ = state;
  return result;
}

template <typename Function>
int Participant::returnTo(State state, const char* operation, Function function) {
  if (state_ <= state) return C_RESULT_OK;
  state_ = state;
  return check(operation, call(operation, function));
}

int Participant::onLoad() {
  return advanceTo(State::kLoaded, "onLoad", [this] { return boot_->onLoad(); });
}

int Participant::onStart() {
  return advanceTo(State::kStarted, "onStart", [this] { return boot_->onStart(); });
}

int Participant::onConfig(std::string name, int arg) {
  return advanceTo(State::kConfigured, "onConfig", [&] { return boot_->onConfig(name, arg); });
}

int Participant::onRun() {
  return advanceTo(State::kRunning, "onRun", [this] { return boot_->onRun(); });
}

int Participant::onUnconfig(std::string name, int arg) {
  return returnTo(State::kStarted, "onUnconfig", [&] { return boot_->onUnconfig(name, arg); });
}

int Participant::onStop() {
  return returnTo(State::kLoaded, "onStop", [this] { return boot_->onStop(); });
}

int Participant::onUnload() {
  return returnTo(State::kIdle, "onUnload", [this] { return boot_->onUnload(); });
}

int Participant::recvDependence(std::string name) {
  if (state_ == State::kIdle) return C_RESULT_OK;
  return call("recvDependence", [&] { return boot_->recvDependence(name); });
}

}  // namespace host
