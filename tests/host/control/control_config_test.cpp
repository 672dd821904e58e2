// SPDX-License-Identifier: MIT
// The configuration tree through the control socket.
#include <nlohmann/json.hpp>

#include "binding/handlers.h"
#include "tests/host/control/control_fixture.h"

namespace host {

using nlohmann::json;

namespace {

constexpr char kDone[] = R"(200 {"result":0})";

class ControlConfigTest : public ControlFixture {};

// Keeps each call of itself.
class Observer final : public ICfmObserver {
 public:
  int update(int number, std::string instance, int operation, std::string leaf) override {
    calls.push_back(std::to_string(number) + ' ' + instance + ' ' + std::to_string(operation) + ' ' + leaf);
    return 0;
  }

  std::vector<std::string> calls;
};

class Provider final : public IDyncDataProvider {
 public:
  explicit Provider(std::function<std::string(const std::string&)> get) : get_(std::move(get)) {}
  std::string dataGet(int, std::string instance, std::string) override { return get_(instance); }

 private:
  std::function<std::string(const std::string&)> get_;
};

TEST_F(ControlConfigTest, LeafIsShownWithItsTypeAndValue) {
  EXPECT_EQ(get("/leaf?name=Device.Time.Server"),
            R"(200 {"computed":false,"name":"Device.Time.Server","type":"str","value":"pool.example"})");
}

TEST_F(ControlConfigTest, LeafOfAnInstanceThatThereCouldBeHasItsDefault) {
  EXPECT_EQ(get("/leaf?name=Device.Interfaces.wlan0.Mtu"),
            R"(200 {"computed":false,"name":"Device.Interfaces.wlan0.Mtu","type":"uint","value":"1500"})");
}

TEST_F(ControlConfigTest, ComputedLeafIsAskedFromItsProvider) {
  Provider provider([](const std::string& instance) { return instance + " now"; });
  config_.registDataProvider(1, &provider);
  EXPECT_EQ(get("/leaf?name=Device.Time.Now"),
            R"(200 {"computed":true,"name":"Device.Time.Now","type":"datetime","value":"Device.Time. now"})");
}

TEST_F(ControlConfigTest, BytesThatAreNoUtf8AreReplaced) {
  config_.setValue("Device.Time.Server",
                   "a\xff"
                   "b\xc3",
                   0);
  EXPECT_EQ(json::parse(get("/leaf?name=Device.Time.Server").substr(4))["value"],
            "a\xef\xbf\xbd"
            "b\xef\xbf\xbd");
}

TEST_F(ControlConfigTest, UnknownLeafIsNotFound) {
  EXPECT_EQ(get("/leaf?name=Device.Time.Colour"),
            errorText(404, C_RESULT_NOT_FOUND, "there is no leaf \"Device.Time.Colour\""));
  EXPECT_EQ(ask("PUT", "/leaf", R"({"name":"x","value":""})"),
            errorText(404, C_RESULT_NOT_FOUND, "there is no leaf \"x\""));
}

TEST_F(ControlConfigTest, LeafNeedsAName) {
  EXPECT_EQ(get("/leaf"), errorText(400, C_RESULT_PARAM, "the parameter \"name\" is missing"));
}

TEST_F(ControlConfigTest, LeafIsSetAndItsObserversAreCalled) {
  Observer observer;
  config_.registObserver(1, &observer);
  EXPECT_EQ(ask("PUT", "/leaf", R"({"name":"Device.Time.Server","value":"time.example"})"), kDone);
  EXPECT_EQ(value("Device.Time.Server"), "time.example");
  EXPECT_EQ(observer.calls, (Texts{"1 Device.Time. 2 Server"}));
}

TEST_F(ControlConfigTest, ValueOfAnotherTypeIsRefused) {
  EXPECT_EQ(ask("PUT", "/leaf", R"({"name":"Device.Time.Enabled","value":"maybe"})"),
            errorText(400, C_RESULT_PARAM, "\"maybe\" is not a value of type bool"));
  EXPECT_EQ(value("Device.Time.Enabled"), "true");
}

TEST_F(ControlConfigTest, ComputedLeafCannotBeSet) {
  EXPECT_EQ(ask("PUT", "/leaf", R"({"name":"Device.Time.Now","value":""})"),
            errorText(400, C_RESULT_PARAM, "\"Device.Time.Now\" is computed and cannot be set"));
}

TEST_F(ControlConfigTest, LeafOfNoInstanceIsSetOnlyWithCreate) {
  EXPECT_EQ(
      ask("PUT", "/leaf", R"({"name":"Device.Interfaces.wlan0.Mtu","value":"1400"})"),
      errorText(404, C_RESULT_NOT_FOUND, "the instance of \"Device.Interfaces.wlan0.Mtu\" does not exist"));
  EXPECT_EQ(ask("PUT", "/leaf", R"({"name":"Device.Interfaces.wlan0.Mtu","value":"1400","create":false})")
                .substr(0, 3),
            "404");
  Observer observer;
  config_.registObserver(2, &observer);
  EXPECT_EQ(ask("PUT", "/leaf", R"({"name":"Device.Interfaces.wlan0.Mtu","value":"1400","create":true})"),
            kDone);
  EXPECT_EQ(value("Device.Interfaces.wlan0.Mtu"), "1400");
  EXPECT_EQ(observer.calls, (Texts{"2 Device.Interfaces.wlan0. 1 ", "2 Device.Interfaces.wlan0. 2 Mtu"}));
}

TEST_F(ControlConfigTest, TreeListsEveryLeafOfEveryInstanceByName) {
  const json answer = json::parse(get("/tree").substr(4));
  Texts names;
  for (const json& leaf : answer["leaves"]) names.push_back(leaf["name"]);
  EXPECT_EQ(names, (Texts{"Device.Interfaces.eth0.Mtu", "Device.Ports.p1.Speed", "Device.Time.Enabled",
                          "Device.Time.Key", "Device.Time.Now", "Device.Time.Server"}));
}

TEST_F(ControlConfigTest, TreeIsThatBehindAPrefix) {
  EXPECT_EQ(get("/tree?name=Device.P"),
            R"(200 {"leaves":[{"computed":false,"name":"Device.Ports.p1.Speed","type":"int","value":"0"}]})");
  EXPECT_EQ(get("/tree?name=Device.Q"), R"(200 {"leaves":[]})");
}

TEST_F(ControlConfigTest, ProviderMayAddAndDeleteInstancesWhileTheTreeIsListed) {
  Provider provider([this](const std::string&) {
    config_.deleteInstance("Device.Interfaces.eth0.");
    config_.addInstance("Device.Interfaces.wlan0.");
    return "";
  });
  config_.registDataProvider(1, &provider);
  EXPECT_EQ(get("/tree?name=Device.Time.Now").substr(0, 3), "200");
  EXPECT_EQ(get("/tree").substr(0, 3), "200");
  EXPECT_EQ(get("/instances?object=2"), R"(200 {"instances":["Device.Interfaces.wlan0."]})");
}

TEST_F(ControlConfigTest, PasswordIsShownOnlyWhenItIsRevealed) {
  const std::string hidden = R"({"computed":false,"name":"Device.Time.Key","type":"pwd","value":null})";
  const std::string revealed =
      R"({"computed":false,"name":"Device.Time.Key","type":"pwd","value":"initial-secret"})";
  EXPECT_EQ(get("/leaf?name=Device.Time.Key"), "200 " + hidden);
  EXPECT_EQ(get("/leaf?name=Device.Time.Key&reveal=false"), "200 " + hidden);
  EXPECT_EQ(get("/leaf?name=Device.Time.Key&reveal=true"), "200 " + revealed);
  EXPECT_EQ(get("/tree?name=Device.Time.K"), R"(200 {"leaves":[)" + hidden + "]}");
  EXPECT_EQ(get("/tree?name=Device.Time.K&reveal=true"), R"(200 {"leaves":[)" + revealed + "]}");
}

TEST_F(ControlConfigTest, DefaultOfAPasswordIsNeverShown) {
  EXPECT_EQ(get("/objects?reveal=true").find("initial-secret"), std::string::npos);
  const json leaf = json::parse(get("/objects").substr(4))["objects"][0]["leaves"][1];
  EXPECT_EQ(leaf, (json{{"name", "Key"}, {"type", "pwd"}, {"default", nullptr}, {"computed", false}}));
}

TEST_F(ControlConfigTest, PasswordIsInNoErrorAndNotInTheLog) {
  ask("PUT", "/leaf", R"({"name":"Device.Time.Key","value":"new-secret"})");
  EXPECT_EQ(ask("PUT", "/leaf", R"({"name":"Device.Time.Key","value":"bad-secret\u0000"})"),
            errorText(400, C_RESULT_PARAM, "the value is not a value of type pwd"));
  EXPECT_EQ(ask("PUT", "/leaf", R"({"name":"Device.Time.Key","value":"bad-secret)").find("bad-secret"),
            std::string::npos);
  EXPECT_EQ(value("Device.Time.Key"), "new-secret");
  EXPECT_EQ(logged().find("secret"), std::string::npos) << logged();
}

TEST_F(ControlConfigTest, RevealIsTrueOrFalse) {
  const std::string refusal =
      errorText(400, C_RESULT_PARAM, "the parameter \"reveal\" must be true or false");
  EXPECT_EQ(get("/leaf?name=Device.Time.Key&reveal=yes"), refusal);
  EXPECT_EQ(get("/tree?reveal=1"), refusal);
  EXPECT_EQ(get("/changes?reveal=yes"), refusal);
}

TEST_F(ControlConfigTest, ObjectsAreListedWithTheirLeavesAndInstances) {
  const json objects = json::parse(get("/objects").substr(4))["objects"];
  ASSERT_EQ(objects.size(), 3u);
  EXPECT_EQ(objects[0]["instances"], json::array({"Device.Time."}));
  EXPECT_EQ(objects[0]["multiple"], false);
  EXPECT_EQ(objects[0]["attribute"], 3);
  EXPECT_EQ(objects[1], json::parse(R"({"number": 2, "name": "Device.Interfaces.", "dynamic": true,
      "multiple": true, "attribute": 0, "instances": ["Device.Interfaces.eth0."],
      "leaves": [{"name": "Mtu", "type": "uint", "default": "1500", "computed": false}]})"));
  EXPECT_EQ(objects[2]["dynamic"], false);
  EXPECT_EQ(objects[2]["multiple"], true);
}

TEST_F(ControlConfigTest, InstancesAreFoundByNumberAndByName) {
  const std::string instances = R"(200 {"instances":["Device.Interfaces.eth0."]})";
  EXPECT_EQ(get("/instances?object=2"), instances);
  EXPECT_EQ(get("/instances?object=Device.Interfaces."), instances);
}

TEST_F(ControlConfigTest, UnknownObjectIsNotFound) {
  for (const std::string name : {"9", "-2", "99999999999", "Device.", ""}) {
    const std::string refusal = errorText(404, C_RESULT_NOT_FOUND, "there is no object \"" + name + '"');
    EXPECT_EQ(get("/instances?object=" + name), refusal);
    EXPECT_EQ(get("/attribute?object=" + name), refusal);
    EXPECT_EQ(ask("PUT", "/attribute", R"({"value":1,"object":")" + name + "\"}"), refusal);
  }
}

TEST_F(ControlConfigTest, InstanceIsAddedAndDeleted) {
  Observer observer;
  config_.registObserver(2, &observer);
  EXPECT_EQ(ask("POST", "/instances", R"({"name":"Device.Interfaces.wlan0."})"), kDone);
  EXPECT_EQ(get("/instances?object=2"),
            R"(200 {"instances":["Device.Interfaces.eth0.","Device.Interfaces.wlan0."]})");
  EXPECT_EQ(ask("DELETE", "/instances?name=Device.Interfaces.wlan0."), kDone);
  EXPECT_EQ(get("/instances?object=2"), R"(200 {"instances":["Device.Interfaces.eth0."]})");
  EXPECT_EQ(observer.calls, (Texts{"2 Device.Interfaces.wlan0. 1 ", "2 Device.Interfaces.wlan0. 3 "}));
}

TEST_F(ControlConfigTest, InstanceThatExistsIsNotAddedAgain) {
  EXPECT_EQ(ask("POST", "/instances", R"({"name":"Device.Interfaces.eth0."})"),
            errorText(409, C_RESULT_REDUNDANT, "the instance \"Device.Interfaces.eth0.\" exists"));
}

TEST_F(ControlConfigTest, InstanceThatThereCannotBeIsNotAdded) {
  for (const std::string name :
       {"Device.Interfaces.eth1", "Device.Interfaces.a.b.", "Device.Ports.p2.", ""}) {
    EXPECT_EQ(
        ask("POST", "/instances", R"({"name":")" + name + "\"}"),
        errorText(404, C_RESULT_NOT_FOUND, '"' + name + "\" cannot be an instance of any dynamic object"));
  }
}

TEST_F(ControlConfigTest, InstanceThatMustStayIsNotDeleted) {
  for (const std::string name : {"Device.Time.", "Device.Ports.p1."}) {
    EXPECT_EQ(ask("DELETE", "/instances?name=" + name),
              errorText(400, C_RESULT_PARAM,
                        "the instance \"" + name + "\" cannot be deleted: its object is not dynamic"));
  }
}

TEST_F(ControlConfigTest, InstanceThatThereIsNotIsNotDeleted) {
  EXPECT_EQ(ask("DELETE", "/instances?name=Device.Interfaces.eth7."),
            errorText(404, C_RESULT_NOT_FOUND, "there is no instance \"Device.Interfaces.eth7.\""));
}

TEST_F(ControlConfigTest, AttributeIsShownAndSet) {
  EXPECT_EQ(ask("PUT", "/attribute", R"({"object":"Device.Time.","value":-2147483648})"), kDone);
  EXPECT_EQ(get("/attribute?object=1"), R"(200 {"attribute":-2147483648,"object":"Device.Time."})");
}

TEST_F(ControlConfigTest, AttributeIsA32BitInteger) {
  const std::string refusal =
      errorText(400, C_RESULT_PARAM, "request body: /value: must be a 32-bit integer");
  for (const std::string value :
       {"2147483648", "-2147483649", "1.5", "\"1\"", "null", "18446744073709551616"}) {
    EXPECT_EQ(ask("PUT", "/attribute", R"({"object":"1","value":)" + value + '}'), refusal) << value;
  }
}

TEST_F(ControlConfigTest, ConfigurationIsSaved) {
  EXPECT_EQ(ask("POST", "/save"), kDone);
}

TEST_F(ControlConfigTest, SaveThatFailsAnswersItsCode) {
  store_result_ = C_RESULT_SYSTEM_CALL;
  config_.setAttr(1, 4);
  EXPECT_EQ(ask("POST", "/save"),
            errorText(503, C_RESULT_SYSTEM_CALL, "the configuration cannot be saved; see the log"));
}

}  // namespace

}  // namespace host
