// SPDX-License-Identifier: MIT
#include "tests/host/control/control_fixture.h"

namespace host {
namespace {

class RequestBodyTest : public ControlFixture {};

TEST_F(RequestBodyTest, DuplicateKeyIsRefused) {
  EXPECT_EQ(ask("PUT", "/leaf", R"({"name":"Device.Time.Server","value":"a","value":"b"})"),
            errorText(400, C_RESULT_PARAM, "request body: /value: duplicate key"));
  EXPECT_EQ(value("Device.Time.Server"), "pool.example");
}

}  // namespace

}  // namespace host
