// SPDX-License-Identifier: MIT
// The HTTP server with handlers of the test.
#include "host/http/server.h"

#include <event2/event.h>

#include <chrono>
#include <functional>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "include_c"
#include "tests/host/http/http_client.h"
#include "tests/host/support/memory_log.h"
#include "tests/support/temporary_folder.h"

namespace host {
namespace {

constexpr std::size_t kPiece = 65536;

class HttpRepliesTest : public testing::Test {
 protected:
  // Serves `/good` and, by the function, every other path.
  void serve(std::function<void(HttpExchange&)> handler,
             const Connections::Limits& limits = Connections::Limits()) {
    server_.emplace(
        base_, path_,
        [handler](HttpExchange& exchange) {
          if (exchange.request().path == "/good") return exchange.reply(200, "{}");
          handler(exchange);
        },
        limits, [](int, const std::string&) {});
  }

  void turn() {
    const timeval wait{0, 1000};
    event_base_once(
        base_.get(), -1, EV_TIMEOUT, [](evutil_socket_t, short, void*) {}, nullptr, &wait);
    event_base_loop(base_.get(), EVLOOP_ONCE);
  }

  void until(const std::function<bool()>& met) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!met()) {
      ASSERT_LT(std::chrono::steady_clock::now(), deadline);
      turn();
    }
  }

  // Everything that the server sends to a client until the client has left or the end of the last chunk.
  std::string received(const std::string& request) {
    HttpClient client(path_);
    client.send(request);
    until([&] {
      client.move();
      return client.isCutOff() || client.received().find("\r\n0\r\n\r\n") != std::string::npos;
    });
    return client.received();
  }

  void expectOthersAreAnswered() {
    HttpClient client(path_);
    client.request("GET", "/good");
    until([&] { return client.move(), !client.answer().empty(); });
    EXPECT_EQ(client.answer(), "200 {}");
  }

  // After an answer that begins like this.
  void expectConnectionEnds(const std::string& answer) {
    const std::string get = "GET / HTTP/1.1\r\n\r\n";
    for (const std::string& request :
         {get, get + get, "PUT / HTTP/1.1\r\nContent-Length: 2\r\n\r\n{}" + get}) {
      EXPECT_EQ(received(request).substr(0, 15), answer);
      expectOthersAreAnswered();
    }
    until([this] { return server_->clients() == 0; });
  }

  TemporaryFolder folder_;
  const std::string path_ = folder_.file("socket");
  MemoryLog log_;
  EventBase base_{log_};
  std::optional<HttpServer> server_;
};

// The pieces "0", "1", ... as often as wanted, each of kPiece bytes.
struct Pieces {
  explicit Pieces(std::size_t count_of_pieces) : count(count_of_pieces) {}
  Piece next() {
    const char digit = static_cast<char>('0' + taken % 10);
    return {std::string(kPiece, digit), ++taken == count};
  }
  void serveIn(HttpExchange& exchange) {
    exchange.replyInPieces([this] { return next(); });
  }

  const std::size_t count;
  std::size_t taken = 0;
};

TEST_F(HttpRepliesTest, FailureOfAHandlerEndsTheConnection) {
  serve([](HttpExchange&) { throw std::bad_alloc(); });
  expectConnectionEnds("");
}

TEST_F(HttpRepliesTest, FailureAfterAReplyEndsTheConnection) {
  serve([](HttpExchange& exchange) {
    exchange.reply(200, "{}");
    throw std::bad_alloc();
  });
  expectConnectionEnds("");
}

TEST_F(HttpRepliesTest, FailureAfterTheStartOfAStreamEndsTheConnection) {
  serve([](HttpExchange& exchange) {
    exchange.stream();
    throw std::bad_alloc();
  });
  expectConnectionEnds("");
}

TEST_F(HttpRepliesTest, RefusalAfterTheStartOfAStreamEndsTheConnection) {
  serve([](HttpExchange& exchange) {
    exchange.stream();
    exchange.refuse(503, C_RESULT_NO_MEMORY, "no memory");
  });
  expectConnectionEnds("");
}

TEST_F(HttpRepliesTest, FailureInAPieceEndsTheConnection) {
  serve([](HttpExchange& exchange) {
    exchange.replyInPieces([count = 0]() mutable -> Piece {
      if (++count == 3) throw std::bad_alloc();
      return {"x", false};
    });
  });
  expectConnectionEnds("HTTP/1.1 200 OK");
}

TEST_F(HttpRepliesTest, RefusalAfterTheFirstPieceEndsTheConnection) {
  serve([](HttpExchange& exchange) {
    exchange.replyInPieces([] { return Piece{"x", false}; });
    exchange.refuse(503, C_RESULT_NO_MEMORY, "no memory");
  });
  expectConnectionEnds("");
}

TEST_F(HttpRepliesTest, RefusalIsJson) {
  serve([](HttpExchange& exchange) { exchange.refuse(404, -7, "no \"leaf\" \xff"); });
  HttpClient client(path_);
  client.request("GET", "/");
  until([&] { return client.move(), !client.answer().empty(); });
  EXPECT_EQ(client.answer(), "404 {\"error\":\"no \\\"leaf\\\" \xef\xbf\xbd\",\"result\":-7}");
}

TEST_F(HttpRepliesTest, ReplyOfOnePieceHasALength) {
  Pieces pieces(1);
  serve([&](HttpExchange& exchange) { pieces.serveIn(exchange); });
  HttpClient client(path_);
  client.request("GET", "/");
  until([&] { return client.move(), !client.answer().empty(); });
  EXPECT_EQ(client.answer(), "200 " + std::string(kPiece, '0'));
}

TEST_F(HttpRepliesTest, ReplyInPiecesIsFollowedByTheNextReply) {
  Pieces pieces(3);
  serve([&](HttpExchange& exchange) { pieces.serveIn(exchange); });
  HttpClient client(path_);
  client.request("GET", "/");
  client.request("GET", "/good");
  until([&] { return client.move(), client.received().find("\r\n\r\n{}\n") != std::string::npos; });
  const std::string head = client.received().substr(0, client.received().find("\r\n\r\n"));
  EXPECT_NE(head.find("\r\nTransfer-Encoding: chunked"), std::string::npos);
  EXPECT_NE(head.find("\r\nContent-Type: application/json"), std::string::npos);
  EXPECT_NE(client.received().find("\r\n10000\r\n" + std::string(kPiece, '0') + "\r\n10000\r\n" +
                                   std::string(kPiece, '1') + "\r\n10001\r\n" + std::string(kPiece, '2') +
                                   "\n\r\n0\r\n\r\nHTTP/1.1 200 OK\r\n"),
            std::string::npos);
}

TEST_F(HttpRepliesTest, ReplyInPiecesEndsWithTheConnectionInTheOldProtocol) {
  for (const std::string header : {"", "Connection: keep-alive\r\n"}) {
    Pieces pieces(3);
    serve([&](HttpExchange& exchange) { pieces.serveIn(exchange); });
    const std::string text = received("GET / HTTP/1.0\r\n" + header + "\r\n");
    EXPECT_EQ(text.find("Content-Length"), std::string::npos);
    EXPECT_EQ(text.find("chunked"), std::string::npos);
    EXPECT_EQ(text.substr(text.find("\r\n\r\n") + 4),
              std::string(kPiece, '0') + std::string(kPiece, '1') + std::string(kPiece, '2') + '\n');
    server_.reset();
  }
}

// The pieces together take longer than a request may.
TEST_F(HttpRepliesTest, TimeLimitAppliesToEachPiece) {
  Connections::Limits limits;
  limits.request_time = std::chrono::milliseconds(500);
  limits.check_every = std::chrono::milliseconds(10);
  serve(
      [](HttpExchange& exchange) {
        exchange.replyInPieces([count = 0]() mutable -> Piece {
          std::this_thread::sleep_for(std::chrono::milliseconds(25));
          return {"x", ++count == 30};
        });
      },
      limits);
  const std::string text = received("GET / HTTP/1.1\r\n\r\n");
  EXPECT_NE(text.find("\r\n2\r\nx\n\r\n0\r\n\r\n"), std::string::npos) << text;
}

TEST_F(HttpRepliesTest, RepliesInPiecesFollowOneAnother) {
  serve([](HttpExchange& exchange) {
    exchange.replyInPieces([count = 0]() mutable -> Piece {
      count++;
      return {std::to_string(count), count == 3};
    });
  });
  HttpClient client(path_);
  client.request("GET", "/");
  client.request("GET", "/");
  const std::string body = "\r\n1\r\n1\r\n1\r\n2\r\n2\r\n3\n\r\n0\r\n\r\n";
  const auto last = [&] { return client.received().rfind(body); };
  until([&] {
    client.move();
    return client.isCutOff() || (last() != std::string::npos && last() != client.received().find(body));
  });
  EXPECT_FALSE(client.isCutOff()) << client.received();
}

// The system takes some pieces for a client that does not read; no more are made.
TEST_F(HttpRepliesTest, PiecesAreMadeWhenTheClientReads) {
  Pieces pieces(200);
  serve([&](HttpExchange& exchange) { pieces.serveIn(exchange); });
  HttpClient client(path_);
  client.request("GET", "/");
  client.write();
  for (int i = 0; i < 50; i++) expectOthersAreAnswered();
  EXPECT_GT(pieces.taken, 0u);
  EXPECT_LT(pieces.taken, 50u);
  until([&] { return client.move(), client.received().size() > pieces.count * kPiece; });
  EXPECT_EQ(pieces.taken, pieces.count);
}

TEST_F(HttpRepliesTest, ClientMayLeaveBetweenPieces) {
  Pieces pieces(1000);
  serve([&](HttpExchange& exchange) { pieces.serveIn(exchange); });
  {
    HttpClient client(path_);
    client.request("GET", "/");
    until([&] { return client.move(), pieces.taken > 20; });
  }
  expectOthersAreAnswered();
  const std::size_t taken = pieces.taken;
  for (int i = 0; i < 20; i++) turn();
  EXPECT_EQ(pieces.taken, taken);
  EXPECT_EQ(server_->clients(), 0u);
}

TEST_F(HttpRepliesTest, ServerMayEndBetweenPieces) {
  Pieces pieces(1000);
  serve([&](HttpExchange& exchange) { pieces.serveIn(exchange); });
  HttpClient client(path_);
  client.request("GET", "/");
  until([&] { return client.move(), pieces.taken > 20; });
  server_.reset();
  client.move();
  EXPECT_TRUE(client.isCutOff());
}

}  // namespace

}  // namespace host
