// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_HOST_HTTP_SERVER_FIXTURE_H
#define CPP2C_TESTS_HOST_HTTP_SERVER_FIXTURE_H

#include <memory>
#include <string>
#include <vector>

#include "host/http/server.h"
#include "tests/host/http/http_fixture.h"
#include "tests/host/support/open_descriptors.h"

namespace host {

constexpr std::size_t kLargeAnswer = 3 << 20;

// A server that opens a stream for "/stream", sends kLargeAnswer bytes for "/large", and answers every other
// request with its method, path and body.
class ServerFixture : public HttpFixture {
 protected:
  explicit ServerFixture(const Connections::Limits& limits = Connections::Limits());

  void publish(const std::string& text);  // to every stream

  void expectOthersAreAnswered() { EXPECT_EQ(get("/other"), "200 GET /other"); }

  // Waits until so many connections are left.
  void expectConnections(std::size_t count);

  Client followEvents() { return follow("/stream"); }

  std::vector<std::weak_ptr<Stream>> streams_;
  HttpServer server_;
  const std::size_t descriptors_ = openDescriptors();  // without connections

 private:
  void answer(HttpExchange& exchange);
  void openStream(HttpExchange& exchange);
};

}  // namespace host

#endif
