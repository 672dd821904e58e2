// SPDX-License-Identifier: MIT
#include "tests/host/http/server_fixture.h"

#include "util/error.h"

namespace host {

ServerFixture::ServerFixture(const Connections::Limits& limits)
    : server_(
          services_.base, path_, [this](HttpExchange& exchange) { answer(exchange); }, limits,
          [](int /*level*/, const std::string& /*text*/) {}) {}

void ServerFixture::publish(const std::string& text) {
  for (const auto& stream : streams_) {
    if (const auto open = stream.lock()) open->send(text);
  }
}

// Each connection has one descriptor of the client and one of the server.
void ServerFixture::expectConnections(std::size_t count) {
  until([&] { return openDescriptors() == descriptors_ + 2 * count; }, "the server to close connections");
  EXPECT_EQ(server_.clients(), count);
}

void ServerFixture::answer(HttpExchange& exchange) {
  const HttpRequest request = exchange.request();
  if (request.path == "/stream") {
    openStream(exchange);
  } else if (request.path == "/large") {
    exchange.reply(200, std::string(kLargeAnswer, 'x'));
  } else {
    exchange.reply(200,
                   request.method + ' ' + request.path + (request.body.empty() ? "" : ' ' + request.body));
  }
}

void ServerFixture::openStream(HttpExchange& exchange) {
  try {
    streams_.push_back(exchange.stream());
  } catch (const util::Error& error) {
    exchange.refuse(503, error.code(), error.what());
  }
}

}  // namespace host
