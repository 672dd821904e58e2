// SPDX-License-Identifier: MIT
#include "context/lifecycle/participant.h"

#include <utility>

#include "binding/context.h"
#include "context/include/cpp2c_host.h"

Participant::Participant(std::string name, IBootContext* boot, ILog& log)
    : name_(std::move(name)), boot_(boot), log_(log) {}

int Participant::check(const char* operation, int result) {
  if (result >= 0) return C_RESULT_OK;
  const std::string text = std::string(operation) + " of " + name_ + " failed: " + std::to_string(result);
  log_.record("lifecycle", C_LOG_ERROR, text.c_str());
  return result;
}

template <typename Call>
int Participant::advanceTo(State state, const char* operation, Call call) {
  const int result = check(operation, call());
  if (result == C_RESULT_OK) state_ = state;
  return result;
}

template <typename Call>
int Participant::fallBackTo(State state, const char* operation, Call call) {
  if (state_ <= state) return C_RESULT_OK;
  state_ = state;
  return check(operation, call());
}

int Participant::onLoad() {
  return advanceTo(kLoaded, "onLoad", [this] { return boot_->onLoad(); });
}

int Participant::onStart() {
  return advanceTo(kStarted, "onStart", [this] { return boot_->onStart(); });
}

int Participant::onConfig(std::string name, int arg) {
  return advanceTo(kConfigured, "onConfig", [&] { return boot_->onConfig(name, arg); });
}

int Participant::onRun() {
  return advanceTo(kRunning, "onRun", [this] { return boot_->onRun(); });
}

int Participant::onUnconfig(std::string name, int arg) {
  return fallBackTo(kStarted, "onUnconfig", [&] { return boot_->onUnconfig(name, arg); });
}

int Participant::onStop() {
  return fallBackTo(kLoaded, "onStop", [this] { return boot_->onStop(); });
}

int Participant::onUnload() {
  return fallBackTo(kIdle, "onUnload", [this] { return boot_->onUnload(); });
}

int Participant::recvDependence(std::string name) {
  return state_ != kIdle ? boot_->recvDependence(name) : static_cast<int>(C_RESULT_OK);
}
