// SPDX-License-Identifier: MIT
// Requests, well-formed and not, and clients that leave. The other clients are always answered.
#include "host/http/server.h"

#include <unistd.h>

#include <filesystem>

#include "include_c"
#include "tests/host/http/server_fixture.h"
#include "tests/support/valgrind.h"

namespace host {
namespace {

class ServerTest : public ServerFixture {
 protected:
  static Connections::Limits limits() {
    Connections::Limits limits;
    limits.request_time = std::chrono::milliseconds(underValgrind() ? 5000 : 200);
    limits.check_every = std::chrono::milliseconds(10);
    return limits;
  }
  ServerTest() : ServerFixture(limits()) {}

  void expectRefused(const std::string& request, const std::string& status) {
    Client client = connect();
    client->send(request);
    expectOthersAreAnswered();
    expectCutOff(*client);
    EXPECT_EQ(client->received().substr(0, 12), "HTTP/1.1 " + status) << request.substr(0, 40);
    client.reset();
    expectConnections(0);
  }

  // A client that leaves once it has sent these bytes.
  void leaveAfter(const std::string& bytes) {
    Client client = connect();
    client->send(bytes);
    client->write();
    client->leave();
    expectOthersAreAnswered();
    expectConnections(0);
  }
};

TEST_F(ServerTest, RequestHasMethodPathAndBody) {
  EXPECT_EQ(ask("PUT", "/a/b", "text"), "200 PUT /a/b text");
}

TEST_F(ServerTest, RequestsOfAClientAreAnsweredInOrder) {
  const Client client = connect();
  for (const char* target : {"/1", "/2", "/3"}) client->request("GET", target);
  for (const char* target : {"/1", "/2", "/3"}) {
    EXPECT_EQ(answerTo(*client), std::string("200 GET ") + target);
  }
}

TEST_F(ServerTest, ChunksOfABodyAreJoined) {
  const Client client = connect();
  client->send(
      "PUT / HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: chunked\r\n\r\n3\r\none\r\n4\r\n two\r\n0\r\n\r\n");
  EXPECT_EQ(answerTo(*client), "200 PUT / one two");
}

TEST_F(ServerTest, RequestMayArriveByteByByte) {
  const Client client = connect();
  for (const char byte : std::string("PUT /slow HTTP/1.1\r\nContent-Length: 4\r\n\r\nbody")) {
    client->send(std::string(1, byte));
    client->move();
    event_base_loop(services_.base.get(), EVLOOP_NONBLOCK);
  }
  EXPECT_EQ(answerTo(*client), "200 PUT /slow body");
}

TEST_F(ServerTest, MalformedRequestIsRefused) {
  for (const std::string& request :
       {std::string("rubbish\r\n\r\n"), std::string("GET /tree\r\n\r\n"),
        std::string("GET /tree HTTP/1.1\r\nno header\r\n\r\n"),
        std::string("GET http://:x/ HTTP/1.1\r\n\r\n"), std::string(1, '\0') + "\xff\r\n\r\n"}) {
    expectRefused(request, "400");
  }
}

TEST_F(ServerTest, NegativeLengthIsRefused) {
  expectRefused("PUT /leaf HTTP/1.1\r\nContent-Length: -1\r\n\r\n", "400");
}

TEST_F(ServerTest, UnsupportedMethodIsRefused) {
  expectRefused("PATCH /leaf HTTP/1.1\r\n\r\n", "501");
}

TEST_F(ServerTest, UnsupportedExpectationIsRefused) {
  expectRefused("PUT /leaf HTTP/1.1\r\nExpect: money\r\nContent-Length: 1\r\n\r\n", "417");
}

TEST_F(ServerTest, ChunkWithoutASizeIsRefused) {
  expectRefused("PUT /leaf HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\nxyz\r\n", "413");
}

TEST_F(ServerTest, LongRequestLineIsRefused) {
  expectRefused("GET /" + std::string(10000, 'x') + " HTTP/1.1\r\n\r\n", "400");
  expectRefused(std::string(100000, 'x'), "400");
}

TEST_F(ServerTest, LongHeadersAreRefused) {
  std::string headers;
  for (int i = 0; i < 2000; i++) headers += "Name: value\r\n";
  expectRefused("GET /tree HTTP/1.1\r\n" + headers + "\r\n", "400");
}

TEST_F(ServerTest, BodyOfAMebibyteIsAccepted) {
  const std::string body(1 << 20, 'x');
  EXPECT_EQ(ask("PUT", "/large", body).size(), sizeof "200 " - 1 + kLargeAnswer);
}

TEST_F(ServerTest, LongerBodyIsRefused) {
  expectRefused("PUT /leaf HTTP/1.1\r\nContent-Length: 1048577\r\n\r\n", "413");
  expectRefused("PUT /leaf HTTP/1.1\r\nContent-Length: 99999999999999999\r\n\r\n", "413");
  expectRefused("PUT /leaf HTTP/1.1\r\nContent-Length: 2000000\r\n\r\n" + std::string(2000000, 'x'), "413");
}

TEST_F(ServerTest, LongChunkIsRefused) {
  expectRefused("PUT /leaf HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n200000\r\n", "413");
}

TEST_F(ServerTest, ClientMayLeaveWithinARequest) {
  leaveAfter("");
  leaveAfter("GET /tr");
  leaveAfter("GET /tree HTTP/1.1\r\nHo");
  leaveAfter("PUT /leaf HTTP/1.1\r\nContent-Length: 100\r\n\r\n{\"na");
  leaveAfter("PUT /leaf HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n10\r\n{\"na");
  leaveAfter("PUT /leaf HTTP/1.1\r\nExpect: 100-continue\r\nContent-Length: 100\r\n\r\n");
}

// Writing the answer then raises SIGPIPE, whose default action is to end the process.
TEST_F(ServerTest, ClientMayLeaveBeforeItsAnswer) {
  leaveAfter("GET /tree HTTP/1.1\r\n\r\n");
  leaveAfter("GET /tree HTTP/1.1\r\n\r\nGET /tree HTTP/1.1\r\n\r\nGET /tr");
  leaveAfter("rubbish\r\n\r\n");
}

TEST_F(ServerTest, ClientThatDoesNotReadItsAnswerIsCutOff) {
  const Client client = connect();
  client->request("GET", "/large");
  client->write();
  expectOthersAreAnswered();
  until([this] { return server_.clients() == 0; }, "the end of the connection");
  client->move();
  EXPECT_LT(client->received().size(), kLargeAnswer);
}

TEST_F(ServerTest, ClientThatSendsRequestsAndDoesNotReadIsCutOff) {
  const Client client = connect();
  for (int i = 0; i < 100000; i++) client->request("GET", "/");
  until([&] { return client->write(), server_.clients() == 1; }, "the connection");
  expectOthersAreAnswered();
  until([&] { return client->write(), server_.clients() == 0; }, "the end of the connection");
}

class ForeignClientTest : public ServerFixture {
 protected:
  // Connects as another user. The kernel records the user when the connection is made.
  Client connectAs(uid_t user) {
    std::filesystem::permissions(folder_.path(), std::filesystem::perms(0711));
    std::filesystem::permissions(path_, std::filesystem::perms(0666));
    EXPECT_EQ(seteuid(user), 0);
    Client client = connect();
    EXPECT_EQ(seteuid(0), 0);
    return client;
  }
};

TEST_F(ForeignClientTest, OtherUserIsRefused) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can connect as another user";
  const Client client = connectAs(65534);
  for (const char* target : {"/", "/stream"}) {
    client->request("GET", target);
    EXPECT_EQ(answerTo(*client),
              R"(403 {"error":"permission denied: only the same user and root may connect","result":-1021})");
  }
  expectOthersAreAnswered();
}

}  // namespace

}  // namespace host
