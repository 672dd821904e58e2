// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_HOST_CONTROL_CONTROL_FIXTURE_H
#define CPP2C_TESTS_HOST_CONTROL_CONTROL_FIXTURE_H

#include <string>

#include "host/config/config_service.h"
#include "host/control/control.h"
#include "host/event/event_service.h"
#include "host/include/cpp2c_host.h"
#include "host/lifecycle/lifecycle.h"
#include "host/log/log_service.h"
#include "host/registration/call_history.h"
#include "include_c"
#include "tests/host/http/http_fixture.h"

namespace host {

// The answer to a request that returns nothing.
constexpr char kDone[] = R"(200 {"result":0})";

// A control socket and the services behind it. Their time is virtual.
class ControlFixture : public HttpFixture {
 protected:
  explicit ControlFixture(const Connections::Limits& limits = Connections::Limits());

  // Waits until the client has received so many items, and returns them without their times. Each must have
  // one.
  Texts newsFor(HttpClient& client, std::size_t count);

  void expectOthersAreAnswered();

  std::string value(const std::string& leaf) { return config_.value(leaf); }
  std::string logged() const { return folder_.read("log"); }

  LogService log_{C_LOG_DEBUG, folder_.file("log"), services_.clock};
  CallHistory history_{services_.registry};
  int store_result_ = C_RESULT_OK;
  ConfigService config_;
  EventService events_{"service", services_.registry};
  Lifecycle lifecycle_{nullptr, {}, log_, services_.registry};
  Control control_;
};

std::string errorText(int status, int result, const std::string& message);

}  // namespace host

#endif
