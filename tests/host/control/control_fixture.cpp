// SPDX-License-Identifier: MIT
#include "tests/host/control/control_fixture.h"

#include <nlohmann/json.hpp>
#include <regex>
#include <vector>

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

std::string withoutTime(const std::string& item) {
  static const std::regex iso(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z)");
  json news = json::parse(item);
  EXPECT_TRUE(std::regex_match(news.value("time", ""), iso)) << item;
  news.erase("time");
  return news.dump();
}

}  // namespace

ControlFixture::ControlFixture(const Connections::Limits& limits)
    : config_(Tree(testObjects()), services_.registry,
              [this](Tree&, const Changes&) { return store_result_; }),
      control_(ControlledServices{services_.clock, config_, events_, log_, lifecycle_, services_.registry,
                                  history_, services_.loop},
               services_.base, path_, limits) {}

ControlFixture::Texts ControlFixture::newsFor(HttpClient& client, std::size_t count) {
  Texts news;
  for (const std::string& item : itemsFor(client, count)) news.push_back(withoutTime(item));
  return news;
}

void ControlFixture::expectOthersAreAnswered() {
  EXPECT_EQ(get("/attribute?object=1"), R"(200 {"attribute":3,"object":"Device.Time."})");
}

std::string errorText(int status, int result, const std::string& message) {
  return std::to_string(status) + ' ' + json{{"error", message}, {"result", result}}.dump();
}

}  // namespace host
