// SPDX-License-Identifier: MIT
// What is followed through the control socket.
#include "host/control/followers.h"

#include "binding/handlers.h"
#include "tests/host/control/control_fixture.h"

namespace host {
namespace {

class ControlStreamsTest : public ControlFixture {};

TEST_F(ControlStreamsTest, StreamIsOneOfServerSentEvents) {
  const Client client = follow("/events");
  EXPECT_EQ(client->received().substr(0, 17), "HTTP/1.1 200 OK\r\n");
  EXPECT_NE(client->received().find("\r\nContent-Type: text/event-stream\r\n"), std::string::npos);
  EXPECT_NE(client->received().find("\r\nCache-Control: no-store\r\n"), std::string::npos);
  EXPECT_EQ(client->items(), Texts());
}

TEST_F(ControlStreamsTest, EventsAreFollowed) {
  const Client client = follow("/events");
  events_.notify("link-up", "eth0", 0);
  ask("POST", "/events", R"({"event":"link-down","data":"a\n\nb"})");
  EXPECT_EQ(newsFor(*client, 2), (Texts{R"({"data":"eth0","event":"link-up","source":"service"})",
                                        R"({"data":"a\n\nb","event":"link-down","source":"service"})"}));
}

TEST_F(ControlStreamsTest, OneKindOfEventIsFollowed) {
  const Client client = follow("/events?event=link-up");
  events_.notify("link-down", "", 0);
  events_.notify("link-up", "\xff", 0);
  EXPECT_EQ(newsFor(*client, 1),
            (Texts{"{\"data\":\"\xef\xbf\xbd\",\"event\":\"link-up\",\"source\":\"service\"}"}));
}

TEST_F(ControlStreamsTest, ChangesAreFollowed) {
  const Client client = follow("/changes");
  config_.setValue("Device.Interfaces.wlan0.Mtu", "1400", C_CFM_CREATE);
  config_.deleteInstance("Device.Interfaces.wlan0.");
  const std::string head = R"({"instance":"Device.Interfaces.wlan0.","leaf":)";
  const std::string object = R"("object":"Device.Interfaces.","operation":)";
  EXPECT_EQ(newsFor(*client, 3), (Texts{head + R"("",)" + object + R"("added","value":null})",
                                        head + R"("Mtu",)" + object + R"("changed","value":"1400"})",
                                        head + R"("",)" + object + R"("deleted","value":null})"}));
}

TEST_F(ControlStreamsTest, ChangesBehindAPrefixAreFollowed) {
  const Client client = follow("/changes?name=Device.Time.E");
  config_.setValue("Device.Time.Server", "a", 0);
  config_.setValue("Device.Time.Enabled", "0", 0);
  EXPECT_EQ(newsFor(*client, 1), (Texts{R"({"instance":"Device.Time.","leaf":"Enabled",)"
                                        R"("object":"Device.Time.","operation":"changed","value":"0"})"}));
}

TEST_F(ControlStreamsTest, ChangeOfAPasswordShowsItOnlyWhenItIsRevealed) {
  const Client hidden = follow("/changes?name=Device.Time.Key");
  const Client revealed = follow("/changes?reveal=true");
  config_.setValue("Device.Time.Key", "new-secret", 0);
  newsFor(*hidden, 1);
  newsFor(*revealed, 1);
  EXPECT_NE(hidden->items().at(0).find("\"value\":null"), std::string::npos);
  EXPECT_EQ(hidden->received().find("secret"), std::string::npos);
  EXPECT_NE(revealed->items().at(0).find("\"value\":\"new-secret\""), std::string::npos);
}

TEST_F(ControlStreamsTest, LogIsFollowed) {
  const Client client = follow("/log");
  log_.record("modem", C_LOG_WARNING, "no carrier");
  EXPECT_EQ(newsFor(*client, 1), (Texts{R"({"level":"warning","module":"modem","text":"no carrier"})"}));
}

TEST_F(ControlStreamsTest, EveryFollowerIsTold) {
  const Client one = follow("/events"), other = follow("/events");
  events_.notify("link-up", "", 0);
  EXPECT_EQ(newsFor(*one, 1), newsFor(*other, 1));
}

TEST_F(ControlStreamsTest, ObserverMayNotifyAnewWhileItIsToldOfAnEventThatIsFollowed) {
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

TEST_F(ControlStreamsTest, OneLargePieceOfNewsReachesAFollowerThatReads) {
  const Client client = follow("/events");
  events_.notify("large", std::string(3 << 20, 'x'), 0);
  EXPECT_EQ(newsFor(*client, 1).size(), 1u);
  EXPECT_FALSE(client->isCutOff());
}

TEST_F(ControlStreamsTest, FollowersLeaveRoomForRequests) {
  std::vector<Client> followers;
  for (int i = 0; i < 24; i++) followers.push_back(follow("/events"));
  EXPECT_EQ(get("/log"), errorText(503, C_RESULT_SYSTEM_CALL, "too many followers; the limit is 24"));
  expectOthersAreAnswered();
  followers.pop_back();
  expectOthersAreAnswered();
  follow("/log");
}

TEST_F(ControlStreamsTest, FollowerThatSendsMoreIsNotDisturbed) {
  const Client client = follow("/events");
  client->request("GET", "/tree");
  client->send("noise");
  client->move();
  turn();
  events_.notify("link-up", "", 0);
  EXPECT_EQ(newsFor(*client, 1).size(), 1u);
}

TEST_F(ControlStreamsTest, NewsForAFollowerThatHasLeftIsDropped) {
  follow("/events")->leave();
  events_.notify("link-up", "", 0);
  until([this] { return get("/statistics").find("\"clients\":1,") != std::string::npos; }, "one client");
  events_.notify("link-up", "", 0);
  expectOthersAreAnswered();
}

TEST_F(ControlStreamsTest, FollowerOfTheOldProtocolIsServedWithoutChunks) {
  const Client client = connect();
  client->send("GET /events HTTP/1.0\r\n\r\n");
  until([&] { return client->move(), client->received().find(": ping\n\n") != std::string::npos; }, "a ping");
  events_.notify("link-up", "", 0);
  until([&] { return client->move(), client->received().find("link-up") != std::string::npos; }, "news");
  EXPECT_EQ(client->received().find("chunked"), std::string::npos);
}

TEST(FollowersTest, FollowersThatAreGoneAreForgottenThoughThereIsNoNews) {
  Followers<int> followers;
  const auto kept = std::make_shared<int>(0);
  for (int i = 0; i < 100; i++) followers.add(std::weak_ptr<Stream>(), [kept](int) { return std::string(); });
  EXPECT_LE(kept.use_count(), 2);
}

}  // namespace

}  // namespace host
