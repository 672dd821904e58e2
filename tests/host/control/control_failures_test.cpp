// SPDX-License-Identifier: MIT
// Changes by a client whose observers throw.
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "binding/handlers.h"
#include "include_c"
#include "tests/host/control/control_fixture.h"

namespace host {
namespace {

class ThrowingObserver final : public ICfmObserver {
 public:
  int update(int /*object*/, std::string /*instance*/, int /*operation*/, std::string /*leaf*/) override {
    throw std::runtime_error("refused");
  }
};

class ControlFailuresTest : public ControlFixture {
 protected:
  const std::string made_ = errorText(503, C_RESULT_SYSTEM_CALL,
                                      "the change was made, but the callback of an observer failed; see the "
                                      "log");
  ThrowingObserver observer_;
};

TEST_F(ControlFailuresTest, LeafIsSetAndTheClientGetsAnError) {
  config_.registObserver(1, &observer_);
  EXPECT_EQ(ask("PUT", "/leaf", R"({"name": "Device.Time.Server", "value": "ntp.example"})"), made_);
  EXPECT_EQ(config_.value("Device.Time.Server"), "ntp.example");
}

TEST_F(ControlFailuresTest, InstanceIsAddedAndDeletedAndTheClientGetsErrors) {
  config_.registObserver(2, &observer_);
  EXPECT_EQ(ask("POST", "/instances", R"({"name": "Device.Interfaces.eth1."})"), made_);
  EXPECT_EQ(ask("DELETE", "/instances?name=Device.Interfaces.eth1."), made_);
  EXPECT_EQ(get("/instances?object=2"), R"(200 {"instances":["Device.Interfaces.eth0."]})");
}

class ThrowingEventObserver final : public IEventObserver {
 public:
  int update(std::string /*event*/, std::string /*data*/, std::string /*source*/) override {
    throw std::runtime_error("refused");
  }
};

TEST_F(ControlFailuresTest, EventIsSentAndTheClientGetsAnError) {
  ThrowingEventObserver observer;
  events_.registObserver("up", &observer);
  EXPECT_EQ(ask("POST", "/events", R"({"event": "up", "data": "eth0"})"),
            errorText(503, C_RESULT_SYSTEM_CALL,
                      "the event was sent, but the callback of an observer failed; see the log"));
}

}  // namespace

}  // namespace host
