// SPDX-License-Identifier: MIT
// The control socket of a whole context, whose loop runs until a client stops it.
#include <algorithm>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "binding/handlers.h"
#include "boot/boot_context.h"
#include "host/host_context.h"
#include "include_c"
#include "tests/host/http/http_client.h"
#include "tests/support/temporary_folder.h"

namespace host {

using nlohmann::json;

namespace {

constexpr char kDone[] = R"(200 {"result":0})";
constexpr char kModule[] = MODULE_FOLDER "/libfirst_module.so";

class StopsOnceAnswered final : public ITimer {
 public:
  explicit StopsOnceAnswered(HttpClient& client) : client_(client) {}

  int timeArrive(int /*expiries*/) override {
    client_.move();
    if (!client_.answer().empty()) std::raise(SIGTERM);
    return 0;
  }

 private:
  HttpClient& client_;
};

class ControlledContextTest : public testing::Test {
 protected:
  void start(std::vector<std::string> more = {}) {
    std::vector<std::string> arguments = {"service", "--control", path_, "--log-file", folder_.file("log")};
    arguments.insert(arguments.end(), more.begin(), more.end());
    std::vector<const char*> argv;
    for (const std::string& argument : arguments) argv.push_back(argument.c_str());
    ASSERT_EQ(context_.emplace().init(argv.size(), reinterpret_cast<std::uintptr_t>(argv.data())),
              C_RESULT_OK);
  }

  // Runs the loop until a client has stopped it. Returns the answer to the client.
  std::string runUntilStopped() {
    HttpClient client(path_);
    client.request("POST", "/stop");
    client.move();
    EXPECT_EQ(context_->getLoop()->run(), C_RESULT_OK);
    client.move();
    return client.takeAnswer();
  }

  // Runs the loop until one request is answered.
  json runFor(const std::string& target) {
    HttpClient client(path_);
    client.request("GET", target);
    StopsOnceAnswered answered(client);
    context_->setTimer(0, 0, 1, &answered);
    EXPECT_EQ(context_->getLoop()->run(), C_RESULT_OK);
    context_->setTimer(-1, 0, 0, &answered);
    return json::parse(client.takeAnswer().substr(4));
  }

  TemporaryFolder folder_;
  const std::string path_ = folder_.file("control");
  std::optional<HostContext> context_;
};

class MasterObserver final : public IBootContext {
 public:
  int onUnload() override { return unloaded++, 0; }

  int unloaded = 0;
};

class Timer final : public ITimer {
 public:
  int timeArrive(int) override { return 0; }
};

TEST_F(ControlledContextTest, StopIsAnsweredBeforeTheLoopEnds) {
  start();
  EXPECT_EQ(runUntilStopped(), kDone);
}

TEST_F(ControlledContextTest, StopUnloadsTheParticipants) {
  MasterObserver master;
  start();
  context_->registMasterObserver(&master);
  ASSERT_EQ(context_->load(), C_RESULT_OK);
  runUntilStopped();
  EXPECT_EQ(master.unloaded, 1);
}

TEST_F(ControlledContextTest, LoopMayRunAgainAfterAStop) {
  start();
  EXPECT_EQ(runUntilStopped(), kDone);
  EXPECT_EQ(runUntilStopped(), kDone);
}

TEST_F(ControlledContextTest, SocketIsRemovedAtTheEnd) {
  start();
  EXPECT_TRUE(std::filesystem::exists(path_));
  context_.reset();
  EXPECT_FALSE(std::filesystem::exists(path_));
}

TEST_F(ControlledContextTest, ConnectionsAreClosedAtTheEnd) {
  start();
  HttpClient follower(path_), silent(path_), half(path_);
  follower.request("GET", "/events");
  follower.move();
  half.send("PUT /leaf HTTP/1.1\r\nContent-Length: 10\r\n\r\n{");
  half.move();
  runUntilStopped();
  context_.reset();
  for (HttpClient* client : {&follower, &silent, &half}) {
    client->move();
    EXPECT_TRUE(client->isCutOff());
  }
  EXPECT_EQ(follower.pings(), 1U);
}

TEST_F(ControlledContextTest, ModulesAreListedWithTheirStates) {
  start({"--module", kModule});
  ASSERT_EQ(context_->load(), C_RESULT_OK);
  EXPECT_EQ(runFor("/modules"),
            (json{{"modules", {{{"library", kModule}, {"state", "running"}}}}, {"state", "running"}}));
}

TEST_F(ControlledContextTest, ModulesAreIdleAfterAStop) {
  start({"--module", kModule});
  ASSERT_EQ(context_->load(), C_RESULT_OK);
  runUntilStopped();
  EXPECT_EQ(runFor("/modules"),
            (json{{"modules", {{{"library", kModule}, {"state", "idle"}}}}, {"state", "idle"}}));
}

TEST_F(ControlledContextTest, TimersAndModuleStepsAreListed) {
  Timer timer;
  start({"--module", kModule});
  ASSERT_EQ(context_->load(), C_RESULT_OK);
  context_->setTimer(60000, 0, 500, &timer);
  std::vector<std::string> listed;
  const json answer = runFor("/registrations");
  for (const json& registration : answer["registrations"]) {
    listed.push_back(registration["kind"].get<std::string>() + ' ' + registration["key"].get<std::string>());
  }
  EXPECT_EQ(std::count(listed.begin(), listed.end(), "timer after 60000 ms, every 500 ms"), 1);
  EXPECT_EQ(std::count(listed.begin(), listed.end(), std::string("module ") + kModule + " onLoad"), 1);
}

TEST_F(ControlledContextTest, ClockIsNamed) {
  start();
  EXPECT_EQ(runFor("/statistics")["clock"], "real");
}

}  // namespace

}  // namespace host
