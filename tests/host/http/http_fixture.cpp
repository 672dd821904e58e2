// SPDX-License-Identifier: MIT
#include "tests/host/http/http_fixture.h"

#include <event2/event.h>

#include <chrono>

namespace host {
namespace {

constexpr timeval kTurn{0, 1000};
constexpr std::chrono::minutes kPatience{2};

void wake(evutil_socket_t /*fd*/, short /*events*/, void* /*argument*/) {}

}  // namespace

void HttpFixture::turn() {
  event_base_once(services_.base.get(), -1, EV_TIMEOUT, wake, nullptr, &kTurn);
  event_base_loop(services_.base.get(), EVLOOP_ONCE);
}

void HttpFixture::until(const std::function<bool()>& met, const char* what) {
  const auto deadline = std::chrono::steady_clock::now() + kPatience;
  while (!met()) {
    ASSERT_LT(std::chrono::steady_clock::now(), deadline) << "timed out waiting for " << what;
    turn();
  }
}

std::string HttpFixture::answerTo(HttpClient& client) {
  until([&] { return client.move(), !client.answer().empty() || client.isCutOff(); }, "an answer");
  return client.takeAnswer();
}

std::string HttpFixture::ask(const std::string& method, const std::string& target, const std::string& body) {
  const Client client = connect();
  client->request(method, target, body);
  return answerTo(*client);
}

HttpFixture::Client HttpFixture::follow(const std::string& target) {
  Client client = connect();
  client->request("GET", target);
  until([&] { return client->move(), client->pings() > 0; }, "the start of a stream");
  return client;
}

HttpFixture::Texts HttpFixture::itemsFor(HttpClient& client, std::size_t count) {
  until([&] { return client.move(), client.items().size() >= count || client.isCutOff(); }, "items");
  return client.items();
}

void HttpFixture::expectCutOff(HttpClient& client) {
  until([&] { return client.move(), client.isCutOff(); }, "the server to close the connection");
}

}  // namespace host
