// SPDX-License-Identifier: MIT
// Clients that behave badly: the others are answered all the same, and nothing of the bad ones is left.
#include <sys/socket.h>

#include <csignal>

#include "tests/host/control/control_fixture.h"

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

class ControlClientsTest : public ControlFixture {
 protected:
  ControlClientsTest() : ControlFixture(shortLimits()), descriptors_(openDescriptors()) {}

  // All clients must have gone.
  void expectNothingLeft() {
    until([this] { return openDescriptors() == descriptors_; }, "closed descriptors");
    expectOthersAreAnswered();
  }

  void expectRefused(const std::string& request, const std::string& status) {
    Client client = connect();
    client->send(request);
    expectOthersAreAnswered();
    expectCutOff(*client);
    EXPECT_EQ(client->received().substr(0, 12), "HTTP/1.1 " + status) << request.substr(0, 40);
    client.reset();
    expectNothingLeft();
  }

  // Has sent this much when it goes.
  void leaveAfter(const std::string& bytes) {
    Client client = connect();
    client->send(bytes);
    client->write();
    client->leave();
    expectOthersAreAnswered();
    expectNothingLeft();
  }

  const std::size_t descriptors_;
};

TEST_F(ControlClientsTest, SilentClientIsCutOff) {
  Client client = connect();
  expectOthersAreAnswered();
  expectCutOff(*client);
  EXPECT_EQ(client->received(), "");
  client.reset();
  expectNothingLeft();
}

TEST_F(ControlClientsTest, SlowClientIsCutOff) {
  Client client = connect();
  expectOthersAreAnswered();
  until([&] { return client->send("G"), client->move(), client->isCutOff(); }, "being cut off");
  client.reset();
  expectNothingLeft();
}

TEST_F(ControlClientsTest, ClientThatSendsByteByByteIsAnswered) {
  const Client client = connect();
  for (const char byte : std::string("PUT /attribute HTTP/1.1\r\nContent-Length: 24\r\n\r\n"
                                     R"({"object":"1","value":8})")) {
    client->send(std::string(1, byte));
    client->move();
    event_base_loop(base_.get(), EVLOOP_NONBLOCK);
  }
  EXPECT_EQ(answerTo(*client), R"(200 {"result":0})");
}

TEST_F(ControlClientsTest, IdleClientIsCutOffAfterItsAnswer) {
  Client client = connect();
  client->request("GET", "/modules");
  EXPECT_EQ(answerTo(*client), R"(200 {"modules":[],"state":"idle"})");
  expectCutOff(*client);
  client.reset();
  expectNothingLeft();
}

TEST_F(ControlClientsTest, FollowerIsNotCutOffForBeingIdle) {
  const Client client = follow("/events");
  const Client silent = connect();
  expectCutOff(*silent);
  events_.notify("link-up", "", 0);
  EXPECT_EQ(newsFor(*client, 1).size(), 1u);
}

TEST_F(ControlClientsTest, StreamShowsAgainAndAgainThatItIsAlive) {
  const Client client = follow("/events");
  const auto first = client->received().rfind(": ping\n\n");
  until([&] { return client->move(), client->received().rfind(": ping\n\n") > first + 20; }, "pings");
  EXPECT_EQ(client->items(), Texts());
}

TEST_F(ControlClientsTest, WhatIsNoHttpIsRefused) {
  expectRefused("rubbish\r\n\r\n", "400");
  expectRefused("GET /tree\r\n\r\n", "400");
  expectRefused("GET /tree HTTP/1.1\r\nno header\r\n\r\n", "400");
  expectRefused("GET http://:x/ HTTP/1.1\r\n\r\n", "400");
  expectRefused(std::string(1, '\0') + "\xff\r\n\r\n", "400");
  expectRefused("PUT /leaf HTTP/1.1\r\nContent-Length: -1\r\n\r\n", "400");
  expectRefused("PATCH /leaf HTTP/1.1\r\n\r\n", "501");
  expectRefused("PUT /leaf HTTP/1.1\r\nExpect: money\r\nContent-Length: 1\r\n\r\n", "417");
}

TEST_F(ControlClientsTest, ChunkWithoutASizeIsRefused) {
  expectRefused("PUT /leaf HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\nxyz\r\n", "413");
}

TEST_F(ControlClientsTest, TooLongHeadersAreRefused) {
  expectRefused("GET /" + std::string(10000, 'x') + " HTTP/1.1\r\n\r\n", "400");
  expectRefused(std::string(100000, 'x'), "400");
  std::string headers;
  for (int i = 0; i < 2000; i++) headers += "Name: value\r\n";
  expectRefused("GET /tree HTTP/1.1\r\n" + headers + "\r\n", "400");
}

TEST_F(ControlClientsTest, TooLargeABodyIsRefused) {
  expectRefused("PUT /leaf HTTP/1.1\r\nContent-Length: 1048577\r\n\r\n", "413");
  expectRefused("PUT /leaf HTTP/1.1\r\nContent-Length: 99999999999999999\r\n\r\n", "413");
  expectRefused("PUT /leaf HTTP/1.1\r\nContent-Length: 2000000\r\n\r\n" + std::string(2000000, 'x'), "413");
  expectRefused("PUT /leaf HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n200000\r\n", "413");
}

TEST_F(ControlClientsTest, ClientMayLeaveInTheMiddleOfARequest) {
  leaveAfter("");
  leaveAfter("GET /tr");
  leaveAfter("GET /tree HTTP/1.1\r\nHo");
  leaveAfter("PUT /leaf HTTP/1.1\r\nContent-Length: 100\r\n\r\n{\"na");
  leaveAfter("PUT /leaf HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n10\r\n{\"na");
  leaveAfter("PUT /leaf HTTP/1.1\r\nExpect: 100-continue\r\nContent-Length: 100\r\n\r\n");
}

// The answer is then written to nobody, at which the system would end the process by a signal.
TEST_F(ControlClientsTest, ClientMayLeaveBeforeItsAnswer) {
  leaveAfter("GET /tree HTTP/1.1\r\n\r\n");
  leaveAfter("GET /tree HTTP/1.1\r\n\r\nGET /tree HTTP/1.1\r\n\r\nGET /tr");
  leaveAfter("rubbish\r\n\r\n");
}

TEST_F(ControlClientsTest, FollowerMayLeaveAtAnyTime) {
  leaveAfter("GET /events HTTP/1.1\r\n\r\n");
  Client client = follow("/events");
  client->leave();
  for (int i = 0; i < 10; i++) events_.notify("link-up", std::string(100000, 'x'), 0);
  expectNothingLeft();
}

TEST_F(ControlClientsTest, FollowerThatDoesNotReadIsCutOff) {
  const Client client = follow("/events");
  for (int i = 0; i < 100; i++) {
    events_.notify("link-up", std::string(100000, 'x'), 0);
    event_base_loop(base_.get(), EVLOOP_NONBLOCK);
  }
  expectOthersAreAnswered();
  until([this] { return openDescriptors() == descriptors_ + 1; }, "the end of the connection");
}

TEST_F(ControlClientsTest, FollowerThatDoesNotReadIsCutOffThoughItSendsAlways) {
  const Client client = follow("/events");
  client->send(std::string(4 << 20, 'x'));
  for (int i = 0; i < 100; i++) {
    events_.notify("link-up", std::string(100000, 'x'), 0);
    client->write();
    event_base_loop(base_.get(), EVLOOP_NONBLOCK);
  }
  expectOthersAreAnswered();
  until([this] { return openDescriptors() == descriptors_ + 1; }, "the end of the connection");
}

TEST_F(ControlClientsTest, ClientThatDoesNotReadItsAnswerIsCutOff) {
  config_.setValue("Device.Time.Server", std::string(3 << 20, 'x'), 0);
  const Client client = connect();
  client->request("GET", "/tree");
  client->write();
  expectOthersAreAnswered();
  until([this] { return openDescriptors() == descriptors_ + 1; }, "the end of the connection");
}

TEST_F(ControlClientsTest, ClientThatAsksAlwaysAndDoesNotReadIsCutOff) {
  const Client client = connect();
  for (int i = 0; i < 100000; i++) client->request("GET", "/objects");
  until([&] { return client->write(), openDescriptors() == descriptors_ + 2; }, "being accepted");
  expectOthersAreAnswered();
  until([&] { return client->write(), openDescriptors() == descriptors_ + 1; }, "the end of the connection");
}

TEST_F(ControlClientsTest, ClientBeyondTheLimitIsAnsweredWhenAnotherHasGone) {
  std::vector<Client> followers(kMostClients);
  for (Client& follower : followers) follower = follow("/events");
  const Client late = connect();
  late->request("GET", "/modules");
  events_.notify("link-up", "", 0);
  for (const Client& follower : followers) EXPECT_EQ(newsFor(*follower, 1).size(), 1u);
  late->move();
  EXPECT_EQ(late->received(), "");
  followers.back()->leave();
  EXPECT_EQ(answerTo(*late), R"(200 {"modules":[],"state":"idle"})");
}

TEST_F(ControlClientsTest, SilentClientsKeepOthersWaitingForALimitedTime) {
  std::vector<Client> silent(kMostClients * 2);
  for (Client& client : silent) client = connect();
  expectOthersAreAnswered();
}

// Nobody looks at what has ended: this must not be needed for the next to be accepted.
class ControlManyClientsTest : public ControlFixture {
 protected:
  static Connections::Limits limits() {
    Connections::Limits limits;
    limits.count = kMostClients;
    limits.check_every = std::chrono::hours(1);
    return limits;
  }
  ControlManyClientsTest() : ControlFixture(limits()) {}
};

TEST_F(ControlManyClientsTest, ClientsOneAfterTheOtherDoNotWait) {
  for (int i = 0; i < 20; i++) expectOthersAreAnswered();
}

}  // namespace

}  // namespace host
