// SPDX-License-Identifier: MIT
// The limits on connections: their number, and the time for a request.
#include "host/http/connections.h"

#include "tests/host/http/server_fixture.h"

namespace host {
namespace {

constexpr std::size_t kMostClients = 4;

Connections::Limits shortLimits() {
  Connections::Limits limits;
  limits.count = kMostClients;
  limits.request_time = std::chrono::milliseconds(200);
  limits.check_every = std::chrono::milliseconds(10);
  limits.ping_every = std::chrono::milliseconds(20);
  return limits;
}

class ConnectionsTest : public ServerFixture {
 protected:
  ConnectionsTest() : ServerFixture(shortLimits()) {}

  // Pings are sent less often than connections are checked, so there are checks between two of them.
  void waitForChecks(HttpClient& follower) {
    const std::size_t seen = follower.pings();
    until([&] { return follower.move(), follower.pings() >= seen + 3; }, "pings");
  }

  std::vector<Client> fill() {
    std::vector<Client> followers(kMostClients);
    for (Client& follower : followers) follower = followEvents();
    return followers;
  }
};

TEST_F(ConnectionsTest, SilentClientIsCutOff) {
  Client client = connect();
  expectOthersAreAnswered();
  expectCutOff(*client);
  EXPECT_EQ(client->received(), "");
  client.reset();
  expectConnections(0);
}

TEST_F(ConnectionsTest, SlowClientIsCutOff) {
  Client client = connect();
  expectOthersAreAnswered();
  until([&] { return client->send("G"), client->move(), client->isCutOff(); }, "the end of the connection");
  client.reset();
  expectConnections(0);
}

TEST_F(ConnectionsTest, IdleClientIsCutOffAfterItsAnswer) {
  Client client = connect();
  client->request("GET", "/");
  EXPECT_EQ(answerTo(*client), "200 GET /");
  expectCutOff(*client);
  client.reset();
  expectConnections(0);
}

TEST_F(ConnectionsTest, IdleFollowerIsNotCutOff) {
  const Client follower = followEvents();
  const Client silent = connect();
  expectCutOff(*silent);
  publish("news");
  EXPECT_EQ(itemsFor(*follower, 1), Texts{"news"});
}

TEST_F(ConnectionsTest, ConnectionsAreCounted) {
  EXPECT_EQ(server_.clients(), 0U);
  const Client first = followEvents();
  EXPECT_EQ(server_.clients(), 1U);
  const Client second = followEvents();
  EXPECT_EQ(server_.clients(), 2U);
}

TEST_F(ConnectionsTest, ClientBeyondTheLimitWaits) {
  const std::vector<Client> followers = fill();
  const Client late = connect();
  late->request("GET", "/late");
  late->move();
  waitForChecks(*followers[0]);
  late->move();
  EXPECT_EQ(late->received(), "");
  EXPECT_EQ(server_.clients(), kMostClients);
}

TEST_F(ConnectionsTest, ClientBeyondTheLimitIsAnsweredWhenAnotherHasLeft) {
  const std::vector<Client> followers = fill();
  const Client late = connect();
  late->request("GET", "/late");
  followers.back()->leave();
  EXPECT_EQ(answerTo(*late), "200 GET /late");
}

TEST_F(ConnectionsTest, ClientsAtTheLimitAreServed) {
  const std::vector<Client> followers = fill();
  publish("news");
  for (const Client& follower : followers) EXPECT_EQ(itemsFor(*follower, 1), Texts{"news"});
}

TEST_F(ConnectionsTest, SilentClientsDelayOthersForALimitedTime) {
  std::vector<Client> silent(kMostClients * 2);
  for (Client& client : silent) client = connect();
  expectOthersAreAnswered();
}

// Without the periodic check, which would forget closed connections and accept clients again.
class UncheckedConnectionsTest : public ServerFixture {
 protected:
  static Connections::Limits limits() {
    Connections::Limits limits;
    limits.count = kMostClients;
    limits.check_every = std::chrono::hours(1);
    return limits;
  }
  UncheckedConnectionsTest() : ServerFixture(limits()) {}
};

TEST_F(UncheckedConnectionsTest, ClosedConnectionIsNotCounted) {
  const Client first = followEvents();
  const Client second = followEvents();
  first->leave();
  until([this] { return server_.clients() == 1; }, "the server to see the end of a connection");
}

TEST_F(UncheckedConnectionsTest, ClosedConnectionsMakeRoomForNewOnes) {
  for (std::size_t i = 0; i < 5 * kMostClients; i++) {
    expectOthersAreAnswered();
    ASSERT_FALSE(HasFailure()) << "client " << i;
  }
}

class DefaultLimitsTest : public ServerFixture {};

TEST_F(DefaultLimitsTest, ThirtyTwoClientsAreServedAtOnce) {
  std::vector<Client> clients(32);
  for (Client& client : clients) {
    client = connect();
    client->request("GET", "/");
    EXPECT_EQ(answerTo(*client), "200 GET /");
  }
  EXPECT_EQ(server_.clients(), 32U);
}

TEST_F(DefaultLimitsTest, ThirtyThirdClientTakesThePlaceOfAnIdleOne) {
  std::vector<Client> clients(32);
  for (Client& client : clients) {
    client = connect();
    client->request("GET", "/");
    answerTo(*client);
  }
  const Client late = connect();
  late->request("GET", "/late");
  EXPECT_EQ(answerTo(*late), "200 GET /late");
  EXPECT_EQ(server_.clients(), 32U);
}

}  // namespace

}  // namespace host
