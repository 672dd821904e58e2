// SPDX-License-Identifier: MIT
// Registrations, the trace of calls and statistics through the control socket.
#include <errno.h>
#include <unistd.h>

#include <chrono>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "binding/handlers.h"
#include "tests/host/control/control_fixture.h"
#include "tests/host/support/running_loop.h"

namespace host {

using nlohmann::json;

namespace {

using std::chrono::microseconds;

// Each call takes as many microseconds as the data of the event says.
class Observer final : public IEventObserver {
 public:
  int update(std::string /*event*/, std::string data, std::string /*source*/) override {
    CallTime::pass(microseconds(data.empty() ? 0 : std::stoi(data)));
    return 7;
  }
};

class ControlDiagnosisTest : public ControlFixture {
 protected:
  json getJson(const std::string& target) { return json::parse(get(target).substr(4)); }
  json firstRegistration() { return getJson("/registrations")["registrations"].at(0); }
  json tracedCall() { return getJson("/trace")["traceEvents"].at(1); }

  // Calls the observer twice, for 1.5 ms and for 0.25 ms.
  void callObserver() {
    events_.registObserver("link-up", &observer_);
    events_.notify("link-up", "1500", 0);
    events_.notify("link-up", "250", 0);
  }

  Observer observer_;
};

TEST_F(ControlDiagnosisTest, RegistrationHasKindKeyAndFunction) {
  events_.registObserver("link-up", &observer_);
  const json registration = firstRegistration();
  EXPECT_EQ(registration["kind"], "event");
  EXPECT_EQ(registration["key"], "link-up");
  EXPECT_EQ(registration["function"], "host::(anonymous namespace)::Observer");
  EXPECT_EQ(registration["location"], "");
}

TEST_F(ControlDiagnosisTest, RegistrationCountsItsCalls) {
  callObserver();
  EXPECT_EQ(firstRegistration()["count"], 2);
  EXPECT_EQ(firstRegistration()["lastResult"], 7);
}

TEST_F(ControlDiagnosisTest, RegistrationThatWasNotCalledHasNoResult) {
  events_.registObserver("link-up", &observer_);
  EXPECT_EQ(firstRegistration()["count"], 0);
  EXPECT_EQ(firstRegistration()["lastResult"], nullptr);
}

TEST_F(ControlDiagnosisTest, RegistrationHasTheTimesOfItsCallsInMilliseconds) {
  callObserver();
  const json registration = firstRegistration();
  EXPECT_EQ(registration["totalMs"], 1.75);
  EXPECT_EQ(registration["longestMs"], 1.5);
  EXPECT_EQ(registration["lastMs"], 0.25);
}

TEST_F(ControlDiagnosisTest, RegistrationHasTheTimeAtWhichItWasMade) {
  services_.clock.reach(services_.clock.now() + std::chrono::hours(1));
  const std::string made = isoTime(services_.clock.wallTime());
  events_.registObserver("link-up", &observer_);
  services_.clock.reach(services_.clock.now() + std::chrono::hours(1));
  EXPECT_EQ(firstRegistration()["since"], made);
}

TEST_F(ControlDiagnosisTest, RegistrationHasNoOtherKeys) {
  events_.registObserver("link-up", &observer_);
  EXPECT_EQ(firstRegistration().size(), 10U);
}

TEST_F(ControlDiagnosisTest, EndedRegistrationIsNotListed) {
  events_.registObserver("link-up", &observer_);
  events_.unregistObserver("link-up", &observer_);
  EXPECT_EQ(getJson("/registrations"), json({{"registrations", json::array()}}));
}

class Callee final : public ILoopData, public ICfmObserver, public IDyncDataProvider {
 public:
  int handler(short, int) override { return 0; }
  int update(int, std::string, int, std::string) override { return 0; }
  std::string dataGet(int, std::string, std::string) override { return ""; }
};

TEST_F(ControlDiagnosisTest, RegistrationsOfEveryServiceAreListedInOrder) {
  Callee callee;
  const Pipe pipe;
  config_.registDataProvider(1, &callee);
  events_.registObserver("link-up", &observer_);
  config_.registObserver(2, &callee);
  services_.loop.addFd(pipe.reading(), C_LOOP_READ, &callee);
  Texts listed;
  const json answer = getJson("/registrations");
  for (const json& registration : answer["registrations"]) {
    listed.push_back(registration["kind"].get<std::string>() + ' ' + registration["key"].get<std::string>());
  }
  EXPECT_EQ(listed, (Texts{"provider Device.Time.", "event link-up", "change Device.Interfaces.",
                           "fd " + std::to_string(pipe.reading())}));
  services_.loop.delFd(pipe.reading());
}

TEST_F(ControlDiagnosisTest, StatisticsNameProgramAndClock) {
  const json statistics = getJson("/statistics");
  EXPECT_EQ(statistics["pid"], getpid());
  EXPECT_EQ(statistics["program"], program_invocation_short_name);
  EXPECT_EQ(statistics["clock"], "virtual");
}

TEST_F(ControlDiagnosisTest, StatisticsCountCallsEventsAndChanges) {
  events_.registObserver("link-up", &observer_);
  events_.notify("link-up", "", 0);
  events_.notify("unheard", "", 0);
  events_.notify("unheard", "", 0);
  config_.setValue("Device.Time.Server", "a", 0);
  config_.setValue("Device.Time.Server", "b", 0);
  const json statistics = getJson("/statistics");
  EXPECT_EQ(statistics["calls"], 1);
  EXPECT_EQ(statistics["events"], 3);
  EXPECT_EQ(statistics["changes"], 2);
}

TEST_F(ControlDiagnosisTest, StatisticsCountClients) {
  const Client follower = follow("/events");
  EXPECT_EQ(getJson("/statistics")["clients"], 2);
}

TEST_F(ControlDiagnosisTest, StatisticsHaveTheTimesOfAllCallsInMilliseconds) {
  callObserver();
  const json statistics = getJson("/statistics");
  EXPECT_EQ(statistics["busyMs"], 1.75);
  EXPECT_EQ(statistics["longestMs"], 1.5);
}

TEST_F(ControlDiagnosisTest, StatisticsHaveTheTimeSinceTheStartInMilliseconds) {
  services_.clock.reach(services_.clock.now() + std::chrono::seconds(90));
  EXPECT_EQ(getJson("/statistics")["uptimeMs"], 90000);
}

TEST_F(ControlDiagnosisTest, StatisticsHaveNoOtherKeys) {
  EXPECT_EQ(getJson("/statistics").size(), 10U);
}

TEST_F(ControlDiagnosisTest, TraceNamesTheProcess) {
  const json trace = getJson("/trace");
  EXPECT_EQ(trace["displayTimeUnit"], "ms");
  EXPECT_EQ(trace["traceEvents"], json::array({{{"name", "process_name"},
                                                {"ph", "M"},
                                                {"pid", getpid()},
                                                {"tid", 1},
                                                {"args", {{"name", program_invocation_short_name}}}}}));
}

TEST_F(ControlDiagnosisTest, TraceHasEachCallAsACompleteEvent) {
  events_.registObserver("link-up", &observer_);
  events_.notify("link-up", "", 0);
  json call = tracedCall();
  call.erase("ts");
  call.erase("dur");
  EXPECT_EQ(call, (json{{"name", "host::(anonymous namespace)::Observer"},
                        {"cat", "event"},
                        {"ph", "X"},
                        {"pid", getpid()},
                        {"tid", 1},
                        {"args", {{"key", "link-up"}, {"result", 7}}}}));
}

TEST_F(ControlDiagnosisTest, TimesInTheTraceAreInMicroseconds) {
  CallTime::pass(microseconds(3));
  const auto start = std::chrono::duration_cast<microseconds>(CallTime::now().time_since_epoch()).count();
  events_.registObserver("link-up", &observer_);
  events_.notify("link-up", "1500", 0);
  EXPECT_EQ(tracedCall()["ts"], start);
  EXPECT_EQ(tracedCall()["dur"], 1500);
}

}  // namespace

}  // namespace host
