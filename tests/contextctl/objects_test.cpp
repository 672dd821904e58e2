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

TEST_F(ObjectsTest, AttributeIsPrinted) {
  context.answer("GET /attribute?object=Device.If.", R"({"object":100,"attribute":-3})");
  expectOutput({"attribute", "Device.If."}, "-3\n");
}

TEST_F(ObjectsTest, AttributeIsPrintedForAScript) {
  context.answer("GET /attribute?object=100", R"({"object":100,"attribute":-3})");
  expectOutput({"attribute", "100", "--json"}, "{\"object\":100,\"attribute\":-3}\n");
}

TEST_F(ObjectsTest, AttributeOfANumberIsSet) {
  context.answer("PUT /attribute", kDone);
  expectOutput({"attribute", "100", "-3"}, "");
  EXPECT_EQ(context.requests(), Requests{R"(PUT /attribute {"object":100,"value":-3})"});
}

TEST_F(ObjectsTest, AttributeOfANameIsSetByItsNumber) {
  knowObjects();
  context.answer("PUT /attribute", kDone);
  expectOutput({"attribute", "Device.If.", "0"}, "");
  EXPECT_EQ(context.requests(), (Requests{"GET /objects", R"(PUT /attribute {"object":100,"value":0})"}));
}

TEST_F(ObjectsTest, AttributeOfAnUnknownNameIsNotSet) {
  knowObjects();
  expectFailure({"attribute", "Device.I", "3"}, 1, "unknown object Device.I");
}

TEST_F(ObjectsTest, AttributeIsANumber) {
  expectFailure({"attribute", "100", "x"}, 2, "Could not convert: ATTRIBUTE = x");
}

}  // namespace
