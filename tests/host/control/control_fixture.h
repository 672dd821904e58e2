// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_HOST_CONTROL_CONTROL_FIXTURE_H
#define CPP2C_TESTS_HOST_CONTROL_CONTROL_FIXTURE_H

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/clock/clock.h"
#include "host/config/config_service.h"
#include "host/control/control.h"
#include "host/event/event_service.h"
#include "host/heartbeat/heartbeat.h"
#include "host/include/cpp2c_host.h"
#include "host/lifecycle/lifecycle.h"
#include "host/log/log_service.h"
#include "host/loop/event_base.h"
#include "host/loop/event_loop.h"
#include "host/registration/call_history.h"
#include "host/registration/registry.h"
#include "include_c"
#include "tests/host/control/control_client.h"
#include "tests/support/temporary_folder.h"

namespace host {

// The services of a program with a control socket, and clients, all on one thread: the loop has its turn
// while a test waits for something.
class ControlFixture : public testing::Test {
 protected:
  using Texts = std::vector<std::string>;
  using Client = std::unique_ptr<ControlClient>;

  explicit ControlFixture(const Connections::Limits& limits = Connections::Limits());

  // Gives the loop its turns until the condition is met. Fails the test if that takes too long.
  void until(const std::function<bool()>& met, const char* what);
  void turn();  // one

  Client connect() const { return std::make_unique<ControlClient>(path_); }

  // The answer to one request by a client of its own: "STATUS BODY".
  std::string ask(const std::string& method, const std::string& target, const std::string& body = "");
  std::string get(const std::string& target) { return ask("GET", target); }
  std::string answerTo(ControlClient& client);

  // A client that has begun to follow.
  Client follow(const std::string& target);
  // Waits for so many items, and gives them without their times, which must be some.
  Texts newsFor(ControlClient& client, std::size_t count);

  void expectCutOff(ControlClient& client);
  void expectOthersAreAnswered();

  std::string value(const std::string& leaf) { return config_.value(leaf); }
  std::string logged() const { return folder_.read("log"); }

  TemporaryFolder folder_;
  const std::string path_ = folder_.file("control");
  Clock clock_;
  LogService log_{C_LOG_DEBUG, folder_.file("log"), clock_};
  Heartbeat heartbeat_{log_, std::chrono::hours(1)};
  Registry registry_{heartbeat_};
  CallHistory history_{registry_};
  int store_result_ = C_RESULT_OK;
  ConfigService config_;
  EventService events_{"service", registry_};
  EventBase base_{log_};
  EventLoop loop_{base_, registry_};
  Lifecycle lifecycle_{nullptr, {}, log_, registry_};
  std::optional<Control> control_;
};

// How many descriptors this process has open.
std::size_t openDescriptors();

std::string errorText(int status, int result, const std::string& message);

}  // namespace host

#endif
