// SPDX-License-Identifier: MIT
// Server-sent events, and clients that do not read them.
#include "host/http/stream.h"

#include "tests/host/http/server_fixture.h"

namespace host {
namespace {

constexpr std::size_t kMostWaiting = 1 << 20;  // bytes for one client

class StreamTest : public ServerFixture {
 protected:
  explicit StreamTest(const Connections::Limits& limits = Connections::Limits()) : ServerFixture(limits) {}
};

TEST_F(StreamTest, AnswerHasTheHeadersOfServerSentEvents) {
  const Client client = followEvents();
  EXPECT_EQ(client->received().substr(0, 17), "HTTP/1.1 200 OK\r\n");
  EXPECT_NE(client->received().find("\r\nContent-Type: text/event-stream\r\n"), std::string::npos);
  EXPECT_NE(client->received().find("\r\nCache-Control: no-store\r\n"), std::string::npos);
}

TEST_F(StreamTest, StreamStartsWithAPing) {
  const Client client = followEvents();
  EXPECT_EQ(client->pings(), 1U);
  EXPECT_EQ(client->items(), Texts());
}

TEST_F(StreamTest, EachTextIsOneItem) {
  const Client client = followEvents();
  publish("one");
  publish("two");
  EXPECT_EQ(itemsFor(*client, 2), (Texts{"one", "two"}));
}

TEST_F(StreamTest, ClientOfHttp10ReceivesNoChunks) {
  const Client client = connect();
  client->send("GET /stream HTTP/1.0\r\n\r\n");
  until([&] { return client->move(), client->pings() > 0; }, "the start of the stream");
  publish("news");
  EXPECT_EQ(itemsFor(*client, 1), Texts{"news"});
  EXPECT_EQ(client->received().find("chunked"), std::string::npos);
}

TEST_F(StreamTest, FollowerMaySendMore) {
  const Client client = followEvents();
  client->request("GET", "/tree");
  client->send("noise");
  client->move();
  turn();
  publish("news");
  EXPECT_EQ(itemsFor(*client, 1), Texts{"news"});
}

TEST_F(StreamTest, OneLargeItemReachesAFollowerThatReads) {
  const Client client = followEvents();
  publish(std::string(3 * kMostWaiting, 'x'));
  EXPECT_EQ(itemsFor(*client, 1), Texts{std::string(3 * kMostWaiting, 'x')});
  EXPECT_FALSE(client->isCutOff());
}

// The loop does not run between the two items, so all of the first one is waiting when the second is sent.
TEST_F(StreamTest, FollowerWithTheMostBytesWaitingIsNotCutOff) {
  const Client client = followEvents();
  publish(std::string(kMostWaiting - 100, 'x'));
  publish("last");
  EXPECT_EQ(itemsFor(*client, 2).size(), 2U);
  EXPECT_FALSE(client->isCutOff());
}

TEST_F(StreamTest, FollowerWithMoreBytesWaitingIsCutOff) {
  const Client client = followEvents();
  publish(std::string(kMostWaiting + 1, 'x'));
  publish("last");
  expectCutOff(*client);
  EXPECT_LE(client->items().size(), 1U);
}

TEST_F(StreamTest, FollowerThatDoesNotReadIsCutOff) {
  const Client client = followEvents();
  for (int i = 0; i < 100; i++) {
    publish(std::string(100000, 'x'));
    event_base_loop(services_.base.get(), EVLOOP_NONBLOCK);
  }
  expectOthersAreAnswered();
  until([this] { return server_.clients() == 0; }, "the end of the connection");
}

TEST_F(StreamTest, FollowerThatSendsButDoesNotReadIsCutOff) {
  const Client client = followEvents();
  client->send(std::string(4 << 20, 'x'));
  for (int i = 0; i < 100; i++) {
    publish(std::string(100000, 'x'));
    client->write();
    event_base_loop(services_.base.get(), EVLOOP_NONBLOCK);
  }
  expectOthersAreAnswered();
  until([this] { return server_.clients() == 0; }, "the end of the connection");
}

TEST_F(StreamTest, FollowerMayLeaveBeforeTheStreamStarts) {
  Client client = connect();
  client->request("GET", "/stream");
  client->write();
  client->leave();
  expectOthersAreAnswered();
  expectConnections(0);
}

TEST_F(StreamTest, FollowerMayLeaveWhileItemsAreSent) {
  const Client client = followEvents();
  client->leave();
  for (int i = 0; i < 10; i++) publish(std::string(100000, 'x'));
  expectConnections(0);
}

TEST_F(StreamTest, StreamBeyondTheLimitIsRefused) {
  std::vector<Client> followers(24);
  for (Client& follower : followers) follower = followEvents();
  EXPECT_EQ(get("/stream"), R"(503 {"error":"too many followers; the limit is 24","result":-1021})");
  expectOthersAreAnswered();
}

TEST_F(StreamTest, FollowerThatLeavesMakesRoomForAnother) {
  std::vector<Client> followers(24);
  for (Client& follower : followers) follower = followEvents();
  followers.pop_back();
  until([this] { return server_.clients() == 23; }, "the server to see the end of a connection");
  EXPECT_EQ(followEvents()->pings(), 1U);
}

class PingTest : public StreamTest {
 protected:
  static Connections::Limits limits() {
    Connections::Limits limits;
    limits.ping_every = std::chrono::milliseconds(10);
    return limits;
  }
  PingTest() : StreamTest(limits()) {}
};

TEST_F(PingTest, StreamIsPingedAgainAndAgain) {
  const Client client = followEvents();
  until([&] { return client->move(), client->pings() >= 4; }, "pings");
  EXPECT_EQ(client->items(), Texts());
}

}  // namespace

}  // namespace host
