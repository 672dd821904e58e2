// SPDX-License-Identifier: MIT
// A fixture for tests that need the very pointers which the configuration service was given.
#ifndef CPP2C_TESTS_SUPPORT_CAPTURING_TEST_H
#define CPP2C_TESTS_SUPPORT_CAPTURING_TEST_H

#include <vector>

#include "binding/handlers.h"
#include "tests/support/recording_test.h"

class CapturingCfm : public RecordingCfm {
 public:
  using RecordingCfm::RecordingCfm;

  std::vector<IDyncDataProvider*> providers;  // of each registDataProvider(), in order
  std::vector<void*> attribute_places;        // of each getAttr(), in order

  int registDataProvider(int id, IDyncDataProvider* provider) override {
    providers.push_back(provider);
    return RecordingCfm::registDataProvider(id, provider);
  }

  int getAttr(int node, void* out) override {
    attribute_places.push_back(out);
    return RecordingCfm::getAttr(node, out);
  }
};

class CapturingContext : public RecordingContext {
 public:
  explicit CapturingContext(CallLog& calls) : RecordingContext(calls), capturing_cfm(calls) {}

  CapturingCfm capturing_cfm;

  ICfm* getCfm() override { return RecordingContext::getCfm() != nullptr ? &capturing_cfm : nullptr; }
};

// Starts with the context obtained and nothing in the log.
class CapturingTest : public UnopenedContextTest {
 protected:
  CapturingTest() {
    proxy.instance = &capturing;
    getContext();
    log.take();
  }

  ~CapturingTest() override { c_context_deinit(); }

  CapturingContext capturing{log};
  CapturingCfm& service = capturing.capturing_cfm;
};

#endif
