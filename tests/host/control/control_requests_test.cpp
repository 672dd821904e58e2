// SPDX-License-Identifier: MIT
// The form of requests to the control socket.
#include "tests/host/control/control_fixture.h"

namespace host {
namespace {

class ControlRequestsTest : public ControlFixture {
 protected:
  std::string put(const std::string& body) { return ask("PUT", "/leaf", body); }
};

TEST_F(ControlRequestsTest, UnknownPathIsNotFound) {
  EXPECT_EQ(get("/colour"), errorText(404, C_RESULT_NOT_FOUND, "unknown path \"/colour\""));
  EXPECT_EQ(get("/"), errorText(404, C_RESULT_NOT_FOUND, "unknown path \"/\""));
}

TEST_F(ControlRequestsTest, UnsupportedMethodIsRefused) {
  EXPECT_EQ(ask("DELETE", "/leaf"), errorText(405, C_RESULT_NOT_FOUND, "\"/leaf\" does not support DELETE"));
  EXPECT_EQ(get("/save"), errorText(405, C_RESULT_NOT_FOUND, "\"/save\" does not support GET"));
  EXPECT_EQ(ask("POST", "/tree"), errorText(405, C_RESULT_NOT_FOUND, "\"/tree\" does not support POST"));
}

TEST_F(ControlRequestsTest, MalformedJsonIsRefused) {
  EXPECT_EQ(put("{\"name\""), errorText(400, C_RESULT_PARAM, "request body:1:8: not valid JSON"));
  EXPECT_EQ(put("\"\xff\""), errorText(400, C_RESULT_PARAM, "request body:1:2: not valid JSON"));
}

TEST_F(ControlRequestsTest, BodyMustBeAJsonObject) {
  EXPECT_EQ(put("[]"), errorText(400, C_RESULT_PARAM, "request body: must be an object"));
}

TEST_F(ControlRequestsTest, EmptyBodyIsAnEmptyObject) {
  EXPECT_EQ(put(""), put("{}"));
}

TEST_F(ControlRequestsTest, NumberOutOfRangeIsRefused) {
  EXPECT_EQ(put(R"({"name":1e999})"), errorText(400, C_RESULT_PARAM, "request body:1:13: not valid JSON"));
}

TEST_F(ControlRequestsTest, JsonSixteenDeepIsAccepted) {
  EXPECT_EQ(put("{\"name\":" + std::string(15, '[') + '1' + std::string(15, ']') + '}'),
            errorText(400, C_RESULT_PARAM, "request body: /name: must be a string"));
}

TEST_F(ControlRequestsTest, DeeperJsonIsRefused) {
  const std::string refusal = errorText(
      400, C_RESULT_PARAM, "request body: /name/0/0/0/0/0/0/0/0/0/0/0/0/0/0/0: nested more than 16 deep");
  EXPECT_EQ(put("{\"name\":" + std::string(16, '[') + '1' + std::string(16, ']') + '}'), refusal);
  EXPECT_EQ(put("{\"name\":" + std::string(500000, '[')), refusal);
}

TEST_F(ControlRequestsTest, MissingKeyIsRefused) {
  EXPECT_EQ(put("{}"), errorText(400, C_RESULT_PARAM, "request body: \"name\" is missing"));
  EXPECT_EQ(put(R"({"name":"x"})"), errorText(400, C_RESULT_PARAM, "request body: \"value\" is missing"));
}

TEST_F(ControlRequestsTest, UnknownKeyIsRefused) {
  EXPECT_EQ(put(R"({"nam":"x"})"), errorText(400, C_RESULT_PARAM, "request body: /nam: unknown key"));
}

TEST_F(ControlRequestsTest, ValueOfAnotherJsonTypeIsRefused) {
  EXPECT_EQ(put(R"({"name":7})"), errorText(400, C_RESULT_PARAM, "request body: /name: must be a string"));
  EXPECT_EQ(put(R"({"name":"x","value":"y","create":1})"),
            errorText(400, C_RESULT_PARAM, "request body: /create: must be true or false"));
}

TEST_F(ControlRequestsTest, QueryIsDecoded) {
  EXPECT_EQ(get("/instances?object=Device%2eInterfaces%2e"),
            R"(200 {"instances":["Device.Interfaces.eth0."]})");
}

TEST_F(ControlRequestsTest, MalformedQueryIsRefused) {
  const std::string refusal =
      errorText(400, C_RESULT_PARAM, "malformed query; expected name=value&name=value");
  EXPECT_EQ(get("/tree?reveal"), refusal);
  EXPECT_EQ(get("/tree?name=Device.Q&reveal"), refusal);
  EXPECT_EQ(get("/tree?=x"), refusal);
}

TEST_F(ControlRequestsTest, EmptyQueryHasNoParameters) {
  EXPECT_EQ(get("/attribute?"), errorText(400, C_RESULT_PARAM, "the parameter \"object\" is missing"));
}

TEST_F(ControlRequestsTest, InvalidUtf8IsReplacedInAnAnswer) {
  EXPECT_EQ(get("/leaf?name=%ff"), errorText(404, C_RESULT_NOT_FOUND, "there is no leaf \"\xef\xbf\xbd\""));
}

}  // namespace

}  // namespace host
