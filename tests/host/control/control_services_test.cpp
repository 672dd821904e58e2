// SPDX-License-Identifier: MIT
// Events and modules through the control socket.
#include <nlohmann/json.hpp>

#include "binding/handlers.h"
#include "tests/host/control/control_fixture.h"

namespace host {
namespace {

class ControlServicesTest : public ControlFixture {};

class Observer final : public IEventObserver {
 public:
  int update(std::string event, std::string data, std::string source) override {
    calls.push_back(event + ' ' + data + ' ' + source);
    return 0;
  }

  std::vector<std::string> calls;
};

TEST_F(ControlServicesTest, EventReachesItsObservers) {
  Observer observer;
  events_.registObserver("link-up", &observer);
  EXPECT_EQ(ask("POST", "/events", R"({"event":"link-up","data":"eth0"})"), kDone);
  EXPECT_EQ(observer.calls, (Texts{"link-up eth0 service"}));
}

TEST_F(ControlServicesTest, EventWithoutNameOrDataIsRefused) {
  EXPECT_EQ(ask("POST", "/events", R"({"data":"eth0"})"),
            errorText(400, C_RESULT_PARAM, "request body: \"event\" is missing"));
  EXPECT_EQ(ask("POST", "/events", R"({"event":"link-up"})"),
            errorText(400, C_RESULT_PARAM, "request body: \"data\" is missing"));
}

TEST_F(ControlServicesTest, SourceOfAnEventCannotBeChosen) {
  EXPECT_EQ(ask("POST", "/events", R"({"event":"e","data":"","source":"x"})"),
            errorText(400, C_RESULT_PARAM, "request body: /source: unknown key"));
}

TEST_F(ControlServicesTest, ModulesAreIdleBeforeTheyAreLoaded) {
  EXPECT_EQ(get("/modules"), R"(200 {"modules":[],"state":"idle"})");
}

}  // namespace

}  // namespace host
