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

TEST_F(ObjectsTest, AMissingLastDotIsPointedOut) {
  const std::string refusal = R"({"result":-1019,"error":"no"})";
  for (const char* request : {"GET /instances?object=A.B", "POST /instances", "DELETE /instances?name=A.B",
                              "GET /attribute?object=A.B", "PUT /attribute"})
    context.answer(request, refusal, 404);
  for (const Requests& command : {Requests{"instances", "A.B"},
                                  {"add", "A.B"},
                                  {"del", "A.B"},
                                  {"attribute", "A.B"},
                                  {"attribute", "A.B", "1"}})
    expectFailure(command, 1, "no; the names of objects and instances end with \".\"");
}

TEST_F(ObjectsTest, OtherRefusalsHaveNoAdvice) {
  context.answer("GET /instances?object=A.", R"({"result":-1019,"error":"no"})", 404);
  context.answer("GET /instances?object=7", R"({"result":-1019,"error":"no"})", 404);
  context.answer("GET /instances?object=A", "", 500);
  expectFailure({"instances", "A."}, 1, "no");
  expectFailure({"instances", "7"}, 1, "no");
  expectFailure({"instances", "A"}, 3, "HTTP status 500");
}

TEST_F(ObjectsTest, AttributeMayBeAnyInteger) {
  context.answer("PUT /attribute", kDone);
  expectOutput({"attribute", "100", "2147483647"}, "");
  expectOutput({"attribute", "100", "-2147483648"}, "");
  EXPECT_EQ(context.requests(), (Requests{R"(PUT /attribute {"object":"100","value":2147483647})",
                                          R"(PUT /attribute {"object":"100","value":-2147483648})"}));
}

TEST_F(ObjectsTest, AttributeMustFitInAnInteger) {
  for (const std::string number : {"2147483648", "-2147483649"}) {
    expectFailure({"attribute", "100", number}, 2, "ATTRIBUTE: \"" + number + "\" is not a 32-bit integer");
  }
}

TEST_F(ObjectsTest, AttributeMustBeAnInteger) {
  expectFailure({"attribute", "100", "x"}, 2, "ATTRIBUTE: \"x\" is not a 32-bit integer");
}

}  // namespace
}  // namespace contextctl
