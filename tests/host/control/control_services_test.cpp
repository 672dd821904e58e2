// SPDX-License-Identifier: MIT
// Events, modules and diagnosis through the control socket, and its end.
#include <errno.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "binding/handlers.h"
#include "host/host_context.h"
#include "tests/host/control/control_fixture.h"
#include "tests/host/support/running_loop.h"

namespace host {

using nlohmann::json;

namespace {

constexpr char kDone[] = R"(200 {"result":0})";

class Observer final : public IEventObserver {
 public:
  int update(std::string event, std::string data, std::string source) override {
    calls.push_back(event + ' ' + data + ' ' + source);
    return 7;
  }

  std::vector<std::string> calls;
};

class ControlServicesTest : public ControlFixture {
 protected:
  json getJson(const std::string& target) { return json::parse(get(target).substr(4)); }
};

TEST_F(ControlServicesTest, EventReachesItsObservers) {
  Observer observer;
  events_.registObserver("link-up", &observer);
  EXPECT_EQ(ask("POST", "/events", R"({"event":"link-up","data":"eth0"})"), kDone);
  EXPECT_EQ(observer.calls, (Texts{"link-up eth0 service"}));
}

TEST_F(ControlServicesTest, EventHasANameAndData) {
  EXPECT_EQ(ask("POST", "/events", R"({"data":"eth0"})"),
            errorText(400, C_RESULT_PARAM, "request body: \"event\" is missing"));
  EXPECT_EQ(ask("POST", "/events", R"({"event":"link-up"})"),
            errorText(400, C_RESULT_PARAM, "request body: \"data\" is missing"));
  EXPECT_EQ(ask("POST", "/events", R"({"event":"e","data":"","source":"x"})"),
            errorText(400, C_RESULT_PARAM, "request body: /source: unknown key"));
}

TEST_F(ControlServicesTest, BeforeItIsLoadedThereAreNoModules) {
  EXPECT_EQ(getJson("/modules"), (json{{"modules", json::array()}, {"state", "idle"}}));
}

TEST_F(ControlServicesTest, RegistrationsAreListedWithTheirCalls) {
  Observer observer;
  events_.registObserver("link-up", &observer);
  events_.notify("link-up", "", 0);
  events_.notify("link-up", "", 0);
  const json registrations = getJson("/registrations")["registrations"];
  ASSERT_EQ(registrations.size(), 1u);
  json registration = registrations[0];
  EXPECT_NE(registration["function"].get<std::string>().find("Observer"), std::string::npos);
  EXPECT_EQ(registration["since"].get<std::string>().size(), sizeof "2026-01-31T12:00:00.250Z" - 1);
  EXPECT_EQ(registration["location"], "");
  for (const char* time : {"totalMs", "longestMs", "lastMs"})
    EXPECT_TRUE(registration[time].is_number_float());
  EXPECT_GE(registration["totalMs"], registration["longestMs"]);
  EXPECT_EQ(registration["kind"], "event");
  EXPECT_EQ(registration["key"], "link-up");
  EXPECT_EQ(registration["count"], 2);
  EXPECT_EQ(registration["lastResult"], 7);
  EXPECT_EQ(registration.size(), 10u);
}

class Callee final : public ILoopData, public ICfmObserver, public IDyncDataProvider, public ITimer {
 public:
  int handler(short, int) override { return 0; }
  int update(int, std::string, int, std::string) override { return 0; }
  std::string dataGet(int, std::string, std::string) override { return ""; }
  int timeArrive(int) override { return 0; }
};

// "KIND KEY" of each.
std::vector<std::string> kindsAndKeys(const json& registrations) {
  std::vector<std::string> texts;
  for (const json& registration : registrations["registrations"]) {
    texts.push_back(registration["kind"].get<std::string>() + ' ' + registration["key"].get<std::string>());
  }
  return texts;
}

TEST_F(ControlServicesTest, RegistrationsOfServicesAreListedByKindInTheirOrder) {
  Callee handler;
  Observer observer;
  const Pipe pipe;
  const int fd = pipe.reading();
  config_.registDataProvider(1, &handler);
  events_.registObserver("link-up", &observer);
  config_.registObserver(2, &handler);
  loop_.addFd(fd, C_LOOP_READ, &handler);
  EXPECT_EQ(kindsAndKeys(getJson("/registrations")),
            (Texts{"provider Device.Time.", "event link-up", "change Device.Interfaces.",
                   "fd " + std::to_string(fd)}));
  loop_.delFd(fd);
}

TEST_F(ControlServicesTest, RegistrationThatWasNotCalledHasNoResult) {
  Observer observer;
  events_.registObserver("link-up", &observer);
  const json registration = getJson("/registrations")["registrations"][0];
  EXPECT_EQ(registration["count"], 0);
  EXPECT_EQ(registration["lastResult"], nullptr);
  events_.unregistObserver("link-up", &observer);
  EXPECT_EQ(getJson("/registrations"), json({{"registrations", json::array()}}));
}

TEST_F(ControlServicesTest, StatisticsCountWhatHappened) {
  Observer observer;
  events_.registObserver("link-up", &observer);
  events_.notify("link-up", "", 0);
  events_.notify("unheard", "", 0);
  config_.setValue("Device.Time.Server", "a", 0);
  const json statistics = getJson("/statistics");
  EXPECT_EQ(statistics["pid"], getpid());
  EXPECT_EQ(statistics["program"], program_invocation_short_name);
  EXPECT_EQ(statistics["clock"], "real");
  EXPECT_EQ(statistics["calls"], 1);
  EXPECT_EQ(statistics["events"], 2);
  EXPECT_EQ(statistics["changes"], 1);
  EXPECT_EQ(statistics["clients"], 1);
  for (const char* time : {"uptimeMs", "busyMs", "longestMs"}) EXPECT_GE(statistics[time], 0) << time;
  EXPECT_EQ(statistics.size(), 10u);
}

TEST_F(ControlServicesTest, TraceHasEachCallAsACompleteEvent) {
  Observer observer;
  events_.registObserver("link-up", &observer);
  events_.notify("link-up", "", 0);
  const json trace = getJson("/trace");
  EXPECT_EQ(trace["displayTimeUnit"], "ms");
  const json& events = trace["traceEvents"];
  ASSERT_EQ(events.size(), 2u);
  EXPECT_EQ(events[0], (json{{"name", "process_name"},
                             {"ph", "M"},
                             {"pid", getpid()},
                             {"tid", 1},
                             {"args", {{"name", program_invocation_short_name}}}}));
  EXPECT_EQ(events[1]["ph"], "X");
  EXPECT_EQ(events[1]["cat"], "event");
  EXPECT_EQ(events[1]["pid"], getpid());
  EXPECT_EQ(events[1]["tid"], 1);
  EXPECT_EQ(events[1]["args"], (json{{"key", "link-up"}, {"result", 7}}));
  EXPECT_TRUE(events[1]["ts"].is_number());
  EXPECT_GE(events[1]["dur"], 0);
}

// A whole context, which clients reach from inside its loop.
class ControlStopTest : public testing::Test {
 protected:
  void start(std::vector<std::string> more = {}) {
    std::vector<std::string> arguments = {"service", "--control", path_, "--log-file", folder_.file("log")};
    arguments.insert(arguments.end(), more.begin(), more.end());
    std::vector<const char*> argv;
    for (const std::string& argument : arguments) argv.push_back(argument.c_str());
    ASSERT_EQ(context_.emplace().init(argv.size(), reinterpret_cast<std::uintptr_t>(argv.data())),
              C_RESULT_OK);
  }

  // The loop runs for one request.
  std::string runFor(const std::string& target) {
    ControlClient client(path_);
    client.request("GET", target);
    client.request("POST", "/stop");
    client.move();
    EXPECT_EQ(context_->getLoop()->run(), C_RESULT_OK);
    client.move();
    const std::string answer = client.takeAnswer();
    EXPECT_EQ(client.takeAnswer(), kDone);
    return answer;
  }

  TemporaryFolder folder_;
  const std::string path_ = folder_.file("control");
  std::optional<HostContext> context_;
};

// Counts its steps back.
class MasterObserver final : public IBootContext {
 public:
  int onUnload() override { return unloaded++, 0; }

  int unloaded = 0;
};

TEST_F(ControlStopTest, StopIsAnsweredAndEndsTheLoopAndTakesEverythingBack) {
  MasterObserver master;
  start();
  context_->registMasterObserver(&master);
  ASSERT_EQ(context_->load(), C_RESULT_OK);
  ControlClient client(path_);
  client.request("POST", "/stop");
  client.move();
  EXPECT_EQ(context_->getLoop()->run(), C_RESULT_OK);
  EXPECT_EQ(master.unloaded, 1);
  client.move();
  EXPECT_EQ(client.answer(), kDone);
  context_.reset();
  EXPECT_FALSE(std::filesystem::exists(path_));
}

TEST_F(ControlStopTest, OpenStreamsAreCutOffAtTheEnd) {
  const std::size_t before = openDescriptors();
  start();
  ControlClient follower(path_), silent(path_), half(path_), stopper(path_);
  follower.request("GET", "/events");
  follower.move();
  half.send("PUT /leaf HTTP/1.1\r\nContent-Length: 10\r\n\r\n{");
  half.move();
  stopper.request("POST", "/stop");
  stopper.move();
  EXPECT_EQ(context_->getLoop()->run(), C_RESULT_OK);
  context_.reset();
  for (ControlClient* client : {&follower, &silent, &half, &stopper}) {
    client->move();
    EXPECT_TRUE(client->isCutOff());
    client->leave();
  }
  EXPECT_NE(follower.received().find(": ping"), std::string::npos);
  EXPECT_EQ(openDescriptors(), before);
}

TEST_F(ControlStopTest, LoopMayRunAgainAfterAStop) {
  start();
  runFor("/modules");
  runFor("/modules");
}

TEST_F(ControlStopTest, ModulesAreListedWithTheirStates) {
  const std::string library = MODULE_FOLDER "/libfirst_module.so";
  start({"--module", library});
  ASSERT_EQ(context_->load(), C_RESULT_OK);
  EXPECT_EQ(json::parse(runFor("/modules").substr(4)),
            (json{{"modules", {{{"library", library}, {"state", "running"}}}}, {"state", "running"}}));
  EXPECT_EQ(json::parse(runFor("/modules").substr(4)),
            (json{{"modules", {{{"library", library}, {"state", "idle"}}}}, {"state", "idle"}}));
}

TEST_F(ControlStopTest, RegistrationsOfTimersAndModulesAreListed) {
  Callee handler;
  start({"--module", MODULE_FOLDER "/libfirst_module.so"});
  ASSERT_EQ(context_->load(), C_RESULT_OK);
  context_->setTimer(60000, 0, 500, &handler);
  const std::vector<std::string> all = kindsAndKeys(json::parse(runFor("/registrations").substr(4)));
  EXPECT_EQ(std::count(all.begin(), all.end(), "timer after 60000 ms, every 500 ms"), 1);
  EXPECT_EQ(std::count(all.begin(), all.end(), "module " MODULE_FOLDER "/libfirst_module.so onLoad"), 1);
}

TEST_F(ControlStopTest, VirtualClockIsNamed) {
  start({"--clock", "virtual"});
  EXPECT_NE(runFor("/statistics").find(R"("clock":"virtual")"), std::string::npos);
}

}  // namespace

}  // namespace host
