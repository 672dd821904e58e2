// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_BOOT_RECORDING_PRODUCT_H
#define CPP2C_TESTS_BOOT_RECORDING_PRODUCT_H

#include <string>
#include <utility>
#include <vector>

#include "binding/dll_mgr.h"
#include "boot/product_config.h"
#include "tests/support/context_proxy.h"

// A product that records its calls and gives access to its fields.
class RecordingProduct : public IProductConfig {
 public:
  explicit RecordingProduct(std::vector<std::string> listed = {}, IContext* owner = nullptr)
      : IProductConfig(owner), listed_(std::move(listed)) {}

  using IProductConfig::context;
  using IProductConfig::libraries;
  using IProductConfig::modules;

  std::string productName() override { return recorded("productName"); }

  void listLibraries() override {
    recorded("listLibraries");
    libraries.insert(libraries.end(), listed_.begin(), listed_.end());
  }

  std::string productVersion() override { return recorded("productVersion"); }

 private:
  static std::string recorded(const std::string& operation) {
    contextProxy().calls.record("product." + operation);
    return operation;
  }

  std::vector<std::string> listed_;
};

#endif
