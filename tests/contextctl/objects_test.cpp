// SPDX-License-Identifier: MIT
#include "tests/contextctl/contextctl_test.h"

namespace {

class ObjectsTest : public ContextctlTest {
 protected:
  void knowObjects() {
    context.answer("GET /objects",
                   R"({"objects":[{"number":1,"name":"Device.","leaves":[],"instances":[]},)"
                   R"({"number":100,"name":"Device.If.","leaves":[],"instances":["Device.If.eth0."]}]})");
  }
};

TEST_F(ObjectsTest, InstancesArePrintedALineEach) {
  context.answer("GET /instances?object=Device.If.",
                 R"({"instances":["Device.If.eth0.","Device.If.wlan0."]})");
  expectOutput({"instances", "Device.If."}, "Device.If.eth0.\nDevice.If.wlan0.\n");
}

TEST_F(ObjectsTest, InstancesArePrintedAsJson) {
  context.answer("GET /instances?object=7", R"({"instances":["A.1."]})");
  expectOutput({"instances", "7", "--json"}, "{\"instances\":[\"A.1.\"]}\n");
}

TEST_F(ObjectsTest, AddSendsTheName) {
  context.answer("POST /instances", kDone);
  expectOutput({"add", "Device.If.wlan0."}, "");
  EXPECT_EQ(context.requests(), Requests{R"(POST /instances {"name":"Device.If.wlan0."})"});
}

TEST_F(ObjectsTest, AddTellsThatTheInstanceExists) {
  context.answer("POST /instances", R"({"result":-1017,"error":"Device.If.eth0. exists"})", 409);
  expectFailure({"add", "Device.If.eth0."}, 1, "Device.If.eth0. exists");
}

TEST_F(ObjectsTest, DelSendsTheName) {
  context.answer("DELETE /instances?name=Device.If.eth0.", kDone);
  expectOutput({"del", "Device.If.eth0."}, "");
}

TEST_F(ObjectsTest, AttrPrintsTheAttributeOfANumber) {
  context.answer("GET /attribute?object=100", R"({"object":100,"value":-3})");
  expectOutput({"attr", "100"}, "-3\n");
}

TEST_F(ObjectsTest, AttrFindsAnObjectByName) {
  knowObjects();
  context.answer("GET /attribute?object=100", R"({"object":100,"value":3})");
  expectOutput({"attr", "Device.If."}, "3\n");
}

TEST_F(ObjectsTest, AttrFindsAnObjectByNameWithoutItsDot) {
  knowObjects();
  context.answer("GET /attribute?object=100", R"({"object":100,"value":3})");
  expectOutput({"attr", "Device.If"}, "3\n");
}

TEST_F(ObjectsTest, AttrRefusesAnUnknownName) {
  knowObjects();
  expectFailure({"attr", "Device.I"}, 1, "unknown object Device.I");
}

TEST_F(ObjectsTest, AttrSetsTheAttribute) {
  context.answer("PUT /attribute", R"({"object":100,"value":-3})");
  expectOutput({"attr", "100", "-3"}, "");
  EXPECT_EQ(context.requests(), Requests{R"(PUT /attribute {"object":100,"value":-3})"});
}

TEST_F(ObjectsTest, AttrWantsANumber) {
  expectFailure({"attr", "100", "x"}, 2, "Could not convert: VALUE = x");
}

}  // namespace
