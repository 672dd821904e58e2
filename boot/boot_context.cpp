// SPDX-License-Identifier: MIT
#include "boot/boot_context.h"

namespace {

int answerTo(const std::string& name) {
  return name == "master" ? 0 : IBootContext::kNotForMe;
}

}  // namespace

IBootContext::~IBootContext() = default;

int IBootContext::onLoad() {
  return 0;
}

int IBootContext::onStart() {
  return 0;
}

int IBootContext::onConfig(std::string name, int /*arg*/) {
  return answerTo(name);
}

int IBootContext::onRun() {
  return 0;
}

int IBootContext::onUnconfig(std::string name, int /*arg*/) {
  return answerTo(name);
}

int IBootContext::onStop() {
  return 0;
}

int IBootContext::onUnload() {
  return 0;
}

int IBootContext::recvDependence(std::string /*name*/) {
  return 0;
}
