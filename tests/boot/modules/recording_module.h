// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_BOOT_MODULES_RECORDING_MODULE_H
#define CPP2C_TESTS_BOOT_MODULES_RECORDING_MODULE_H

#include <string>
#include <utility>

#include "boot/module.h"
#include "tests/support/context_proxy.h"

// A module that records its calls with its name, for example `first.onConfig('cfmd', 3)`.
class RecordingModule : public IModule {
 public:
  explicit RecordingModule(std::string module_name) : name(std::move(module_name)) {}

  const std::string name;
  void* asked_with = nullptr;  // argument of its library's "getInstance"

  int onLoad() override { return record("onLoad"); }
  int onStart() override { return record("onStart"); }
  int onConfig(std::string config, int arg) override { return record("onConfig", config, arg); }
  int onRun() override { return record("onRun"); }
  int onUnconfig(std::string config, int arg) override { return record("onUnconfig", config, arg); }
  int onStop() override { return record("onStop"); }
  int onUnload() override { return record("onUnload"); }
  int recvDependence(std::string dependence) override { return record("recvDependence", dependence); }

  template <typename... Arguments>
  int record(const std::string& operation, const Arguments&... arguments) {
    return contextProxy().calls.record(name + '.' + operation, arguments...);
  }
};

#endif
