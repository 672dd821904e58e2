// SPDX-License-Identifier: MIT
#include "tests/contextctl/contextctl_test.h"

namespace contextctl {
namespace {

using ObjectsTest = ContextctlTest;

TEST_F(ObjectsTest, InstancesArePrintedOnePerLine) {
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

TEST_F(ObjectsTest, AddReportsThatTheInstanceExists) {
  context.answer("POST /instances", R"({"result":-1017,"error":"Device.If.eth0. exists"})", 409);
  expectFailure({"add", "Device.If.eth0."}, 1, "Device.If.eth0. exists");
}

TEST_F(ObjectsTest, DelSendsTheName) {
  context.answer("DELETE /instances?name=Device.If.eth0.", kDone);
  expectOutput({"del", "Device.If.eth0."}, "");
}

TEST_F(ObjectsTest, AttributeIsPrinted) {
  context.answer("GET /attribute?object=Device.If.", R"({"object":"Device.If.","attribute":-3})");
  expectOutput({"attribute", "Device.If."}, "-3\n");
}

TEST_F(ObjectsTest, AttributeIsPrintedAsJson) {
  context.answer("GET /attribute?object=100", R"({"object":"Device.If.","attribute":-3})");
  expectOutput({"attribute", "100", "--json"}, "{\"object\":\"Device.If.\",\"attribute\":-3}\n");
}

TEST_F(ObjectsTest, AnAttributeThatIsNotANumberIsPrintable) {
  context.answer("GET /attribute?object=100", R"({"attribute":"\u001b[2J"})");
  expectOutput({"attribute", "100"}, "\\x1b[2J\n");
}

TEST_F(ObjectsTest, AttributeIsSet) {
  context.answer("PUT /attribute", kDone);
  expectOutput({"attribute", "100", "-3"}, "");
  EXPECT_EQ(context.requests(), Requests{R"(PUT /attribute {"object":"100","value":-3})"});
}

TEST_F(ObjectsTest, AttributeMustBeAnInteger) {
  expectFailure({"attribute", "100", "x"}, 2, "ATTRIBUTE: \"x\" is not a 32-bit integer");
}

}  // namespace
}  // namespace contextctl
