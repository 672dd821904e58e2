// SPDX-License-Identifier: MIT
// What every request of the control socket has to look like.
#include "tests/host/control/control_fixture.h"

namespace host {
namespace {

class ControlRequestsTest : public ControlFixture {
 protected:
  std::string put(const std::string& body) { return ask("PUT", "/leaf", body); }
};

TEST_F(ControlRequestsTest, UnknownAddressIsNotFound) {
  EXPECT_EQ(get("/colour"), errorText(404, C_RESULT_NOT_FOUND, "unknown path \"/colour\""));
  EXPECT_EQ(get("/"), errorText(404, C_RESULT_NOT_FOUND, "unknown path \"/\""));
}

TEST_F(ControlRequestsTest, AddressHasItsMethods) {
  EXPECT_EQ(ask("DELETE", "/leaf"), errorText(405, C_RESULT_NOT_FOUND, "\"/leaf\" does not support DELETE"));
  EXPECT_EQ(get("/save"), errorText(405, C_RESULT_NOT_FOUND, "\"/save\" does not support GET"));
  EXPECT_EQ(ask("POST", "/tree"), errorText(405, C_RESULT_NOT_FOUND, "\"/tree\" does not support POST"));
}

TEST_F(ControlRequestsTest, BodyIsAJsonObject) {
  EXPECT_EQ(put("{\"name\""), errorText(400, C_RESULT_PARAM, "request body:1:8: not valid JSON"));
  EXPECT_EQ(put("\"\xff\""), errorText(400, C_RESULT_PARAM, "request body:1:2: not valid JSON"));
  EXPECT_EQ(put("[]"), errorText(400, C_RESULT_PARAM, "request body: must be an object"));
}

TEST_F(ControlRequestsTest, NumberThatIsOutOfRangeIsRefused) {
  EXPECT_EQ(put(R"({"name":1e999})"), errorText(400, C_RESULT_PARAM, "request body:1:13: not valid JSON"));
}

TEST_F(ControlRequestsTest, DeepJsonIsRefused) {
  const std::string refusal = errorText(
      400, C_RESULT_PARAM, "request body: /name/0/0/0/0/0/0/0/0/0/0/0/0/0/0/0: nested more than 16 deep");
  EXPECT_EQ(put("{\"name\":" + std::string(500000, '[')), refusal);
  EXPECT_EQ(put("{\"name\":" + std::string(16, '[') + '1' + std::string(16, ']') + '}'), refusal);
  EXPECT_EQ(put("{\"name\":" + std::string(15, '[') + '1' + std::string(15, ']') + '}'),
            errorText(400, C_RESULT_PARAM, "request body: /name: must be a string"));
}

TEST_F(ControlRequestsTest, KeyIsMissingUnknownOrOfAnotherKind) {
  EXPECT_EQ(put("{}"), errorText(400, C_RESULT_PARAM, "request body: \"name\" is missing"));
  EXPECT_EQ(put(""), errorText(400, C_RESULT_PARAM, "request body: \"name\" is missing"));
  EXPECT_EQ(put(R"({"name":"x"})"), errorText(400, C_RESULT_PARAM, "request body: \"value\" is missing"));
  EXPECT_EQ(put(R"({"name":7})"), errorText(400, C_RESULT_PARAM, "request body: /name: must be a string"));
  EXPECT_EQ(put(R"({"nam":"x"})"), errorText(400, C_RESULT_PARAM, "request body: /nam: unknown key"));
  EXPECT_EQ(put(R"({"name":"x","value":"y","create":1})"),
            errorText(400, C_RESULT_PARAM, "request body: /create: must be true or false"));
}

TEST_F(ControlRequestsTest, QueryIsDecoded) {
  EXPECT_EQ(get("/instances?object=Device%2eInterfaces%2e"),
            R"(200 {"instances":["Device.Interfaces.eth0."]})");
}

TEST_F(ControlRequestsTest, QueryThatIsNoneIsRefused) {
  const std::string refusal =
      errorText(400, C_RESULT_PARAM, "malformed query; expected name=value&name=value");
  EXPECT_EQ(get("/tree?reveal"), refusal);
  EXPECT_EQ(get("/tree?name=Device.Q&reveal"), refusal);
  EXPECT_EQ(get("/tree?=x"), refusal);
}

TEST_F(ControlRequestsTest, EmptyQueryIsNone) {
  EXPECT_EQ(get("/attribute?"), errorText(400, C_RESULT_PARAM, "the parameter \"object\" is missing"));
}

TEST_F(ControlRequestsTest, NameThatIsNoUtf8IsAnsweredAsJson) {
  EXPECT_EQ(get("/leaf?name=%ff"), errorText(404, C_RESULT_NOT_FOUND, "there is no leaf \"\xef\xbf\xbd\""));
}

TEST_F(ControlRequestsTest, LaterRequestsOfAClientAreAnsweredInTheirOrder) {
  const Client client = connect();
  client->request("GET", "/colour");
  client->request("GET", "/attribute?object=1");
  client->request("POST", "/save");
  EXPECT_EQ(answerTo(*client), errorText(404, C_RESULT_NOT_FOUND, "unknown path \"/colour\""));
  EXPECT_EQ(answerTo(*client), R"(200 {"attribute":3,"object":"Device.Time."})");
  EXPECT_EQ(answerTo(*client), R"(200 {"result":0})");
}

TEST_F(ControlRequestsTest, BodyInChunksIsTakenWhole) {
  const Client client = connect();
  client->send(
      "PUT /leaf HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: chunked\r\n\r\n"
      "10\r\n{\"name\":\"Device.\r\n21\r\nTime.Server\",\"value\":\"of chunks\"}\r\n0\r\n\r\n");
  EXPECT_EQ(answerTo(*client), R"(200 {"result":0})");
  EXPECT_EQ(value("Device.Time.Server"), "of chunks");
}

}  // namespace

}  // namespace host
