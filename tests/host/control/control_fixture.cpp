// SPDX-License-Identifier: MIT
#include "tests/host/control/control_fixture.h"

#include <event2/event.h>

#include <filesystem>
#include <iterator>
#include <nlohmann/json.hpp>
#include <regex>

#include "host/start/configuration_file.h"

namespace host {

using nlohmann::json;

namespace {

constexpr char kConfiguration[] = R"({"objects": [
  {"number": 1, "name": "Device.Time.", "attribute": 3, "leaves": {
    "Server": {"type": "str", "default": "pool.example"},
    "Enabled": {"type": "bool", "default": true},
    "Now": {"type": "datetime", "computed": true},
    "Key": {"type": "pwd", "default": "initial-secret"}}},
  {"number": 2, "name": "Device.Interfaces.", "dynamic": true,
   "leaves": {"Mtu": {"type": "uint", "default": 1500}},
   "instances": {"Device.Interfaces.eth0.": {"Mtu": 9000}}},
  {"number": 3, "name": "Device.Ports.", "leaves": {"Speed": {"type": "int"}},
   "instances": {"Device.Ports.p1.": {}}}
]})";

std::vector<Object> testObjects() {
  return parseConfiguration(kConfiguration, "test").objects;
}

constexpr timeval kTurn{0, 1000};
constexpr std::chrono::seconds kPatience{20};

void wake(evutil_socket_t /*fd*/, short /*events*/, void* /*argument*/) {}

std::string withoutTime(const std::string& item) {
  static const std::regex iso(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z)");
  json news = json::parse(item);
  EXPECT_TRUE(std::regex_match(news.value("time", ""), iso)) << item;
  news.erase("time");
  return news.dump();
}

}  // namespace

ControlFixture::ControlFixture(const Connections::Limits& limits)
    : config_(Tree(testObjects()), registry_, [this](Tree&, const Changes&) { return store_result_; }) {
  control_.emplace(ControlledServices{clock_, config_, events_, log_, lifecycle_, registry_, history_, loop_},
                   base_, path_, limits);
}

void ControlFixture::turn() {
  event_base_once(base_.get(), -1, EV_TIMEOUT, wake, nullptr, &kTurn);
  event_base_loop(base_.get(), EVLOOP_ONCE);
}

void ControlFixture::until(const std::function<bool()>& met, const char* what) {
  const auto deadline = std::chrono::steady_clock::now() + kPatience;
  while (!met()) {
    ASSERT_LT(std::chrono::steady_clock::now(), deadline) << "waited in vain: " << what;
    turn();
  }
}

std::string ControlFixture::answerTo(ControlClient& client) {
  until([&] { return client.move(), !client.answer().empty() || client.isCutOff(); }, "an answer");
  return client.takeAnswer();
}

std::string ControlFixture::ask(const std::string& method, const std::string& target,
                                const std::string& body) {
  const Client client = connect();
  client->request(method, target, body);
  return answerTo(*client);
}

ControlFixture::Client ControlFixture::follow(const std::string& target) {
  Client client = connect();
  client->request("GET", target);
  until([&] { return client->move(), client->received().find(": ping\n\n") != std::string::npos; },
        "the beginning of a stream");
  return client;
}

ControlFixture::Texts ControlFixture::newsFor(ControlClient& client, std::size_t count) {
  until([&] { return client.move(), client.items().size() >= count || client.isCutOff(); }, "news");
  Texts news;
  for (const std::string& item : client.items()) news.push_back(withoutTime(item));
  return news;
}

void ControlFixture::expectCutOff(ControlClient& client) {
  until([&] { return client.move(), client.isCutOff(); }, "being cut off");
}

void ControlFixture::expectOthersAreAnswered() {
  EXPECT_EQ(get("/attribute?object=1"), R"(200 {"attribute":3,"object":"Device.Time."})");
}

std::size_t openDescriptors() {
  const std::filesystem::directory_iterator entries("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

std::string errorText(int status, int result, const std::string& message) {
  return std::to_string(status) + ' ' + json{{"error", message}, {"result", result}}.dump();
}

}  // namespace host
