// SPDX-License-Identifier: MIT
// Events, changes and log records that clients follow.
#include <vector>

#include "binding/handlers.h"
#include "tests/host/control/control_fixture.h"

namespace host {
namespace {

class ControlStreamsTest : public ControlFixture {};

TEST_F(ControlStreamsTest, FollowerReceivesEvents) {
  const Client client = follow("/events");
  events_.notify("link-up", "eth0", 0);
  ask("POST", "/events", R"({"event":"link-down","data":"a\n\nb"})");
  EXPECT_EQ(newsFor(*client, 2), (Texts{R"({"data":"eth0","event":"link-up","source":"service"})",
                                        R"({"data":"a\n\nb","event":"link-down","source":"service"})"}));
}

TEST_F(ControlStreamsTest, FollowerMayAskForOneEvent) {
  const Client client = follow("/events?event=link-up");
  events_.notify("link-down", "", 0);
  events_.notify("link-up", "\xff", 0);
  EXPECT_EQ(newsFor(*client, 1),
            (Texts{"{\"data\":\"\xef\xbf\xbd\",\"event\":\"link-up\",\"source\":\"service\"}"}));
}

TEST_F(ControlStreamsTest, FollowerReceivesChanges) {
  const Client client = follow("/changes");
  config_.setValue("Device.Interfaces.wlan0.Mtu", "1400", C_CFM_CREATE);
  config_.deleteInstance("Device.Interfaces.wlan0.");
  const std::string head = R"({"instance":"Device.Interfaces.wlan0.","leaf":)";
  const std::string object = R"("object":"Device.Interfaces.","operation":)";
  EXPECT_EQ(newsFor(*client, 3), (Texts{head + R"("",)" + object + R"("added","value":null})",
                                        head + R"("Mtu",)" + object + R"("changed","value":"1400"})",
                                        head + R"("",)" + object + R"("deleted","value":null})"}));
}

TEST_F(ControlStreamsTest, FollowerMayAskForChangesUnderAPrefix) {
  const Client client = follow("/changes?name=Device.Time.E");
  config_.setValue("Device.Time.Server", "a", 0);
  config_.setValue("Device.Time.Enabled", "0", 0);
  EXPECT_EQ(newsFor(*client, 1), (Texts{R"({"instance":"Device.Time.","leaf":"Enabled",)"
                                        R"("object":"Device.Time.","operation":"changed","value":"0"})"}));
}

TEST_F(ControlStreamsTest, ChangedPasswordIsShownOnlyWhenRevealed) {
  const Client hidden = follow("/changes?name=Device.Time.Key");
  const Client revealed = follow("/changes?reveal=true");
  config_.setValue("Device.Time.Key", "new-secret", 0);
  newsFor(*hidden, 1);
  newsFor(*revealed, 1);
  EXPECT_NE(hidden->items().at(0).find("\"value\":null"), std::string::npos);
  EXPECT_EQ(hidden->received().find("secret"), std::string::npos);
  EXPECT_NE(revealed->items().at(0).find("\"value\":\"new-secret\""), std::string::npos);
}

TEST_F(ControlStreamsTest, FollowerReceivesLogRecords) {
  const Client client = follow("/log");
  log_.record("modem", C_LOG_WARNING, "no carrier");
  EXPECT_EQ(newsFor(*client, 1), (Texts{R"({"level":"warning","module":"modem","text":"no carrier"})"}));
}

TEST_F(ControlStreamsTest, EveryFollowerReceivesTheEvent) {
  const Client one = follow("/events"), other = follow("/events");
  events_.notify("link-up", "", 0);
  EXPECT_EQ(newsFor(*one, 1), newsFor(*other, 1));
}

TEST_F(ControlStreamsTest, ObserverMaySendAnEventWhileAnotherIsFollowed) {
  class Chain final : public IEventObserver {
   public:
    explicit Chain(EventService& events) : events_(events) {}
    int update(std::string, std::string, std::string) override { return events_.notify("second", "", 0); }

   private:
    EventService& events_;
  } chain(events_);
  events_.registObserver("first", &chain);
  const Client client = follow("/events");
  events_.notify("first", "", 0);
  EXPECT_EQ(newsFor(*client, 2), (Texts{R"({"data":"","event":"first","source":"service"})",
                                        R"({"data":"","event":"second","source":"service"})"}));
}

TEST_F(ControlStreamsTest, FollowersLeaveRoomForRequests) {
  std::vector<Client> followers(24);
  for (Client& follower : followers) follower = follow("/events");
  EXPECT_EQ(get("/log"), errorText(503, C_RESULT_SYSTEM_CALL, "too many followers; the limit is 24"));
  expectOthersAreAnswered();
}

TEST_F(ControlStreamsTest, ItemsForAFollowerThatHasLeftAreDropped) {
  follow("/events")->leave();
  events_.notify("link-up", "", 0);
  until([this] { return get("/statistics").find("\"clients\":1,") != std::string::npos; }, "one client");
  events_.notify("link-up", "", 0);
  expectOthersAreAnswered();
}

}  // namespace

}  // namespace host
