// SPDX-License-Identifier: MIT
// What a C program on the host context saves, and finds again.
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/c_interface/c_interface_fixture.h"

using namespace host;

namespace {

constexpr int kDevice = 1;
constexpr int kLink = 2;

const char kConfig[] = R"({"objects": [
  {"number": 1, "name": "Device.", "attribute": 5, "leaves": {
    "Int": {"type": "int", "default": -7},
    "Pwd": {"type": "pwd", "default": "secret"}}},
  {"number": 2, "name": "Link.", "dynamic": true, "leaves": {"Mtu": {"type": "uint", "default": 1500}},
   "instances": {"Link.lo.": {"Mtu": 65536}}}
]})";

int keepName(int, char* name, void*, c_pass_fn3, c_pass_fn4, void* names) {
  static_cast<std::vector<std::string>*>(names)->push_back(name);
  return 0;
}

class CStateTest : public CInterfaceFixture {
 protected:
  CStateTest() { start(); }

  void start() { EXPECT_EQ(initWith(kConfig, {"--state", folder_.file("state.db")}), C_RESULT_OK); }

  void restart() {
    c_context_deinit();
    start();
  }

  static std::uint32_t word(const char* name, const char* type) {
    std::uint32_t value = 0;
    EXPECT_EQ(c_cfm_get_value(name, type, &value, sizeof value), C_RESULT_OK);
    return value;
  }

  static void setWord(const char* name, const char* type, std::uint32_t value, int option = 0) {
    EXPECT_EQ(c_cfm_set_value(name, option, type, &value, sizeof value), C_RESULT_OK);
  }
};

TEST_F(CStateTest, SavedValueIsReadAfterARestart) {
  setWord("Device.Int", "int", 42);
  EXPECT_EQ(c_cfm_set_value("Device.Pwd", 0, "pwd", "hidden", sizeof "hidden"), C_RESULT_OK);
  EXPECT_EQ(c_cfm_save_config(), C_RESULT_OK);
  restart();
  EXPECT_EQ(word("Device.Int", "int"), 42U);
  char text[16] = {};
  EXPECT_EQ(c_cfm_get_value("Device.Pwd", "pwd", text, sizeof text), C_RESULT_OK);
  EXPECT_STREQ(text, "hidden");
  EXPECT_EQ(records(), std::vector<std::string>());
}

TEST_F(CStateTest, ValueThatIsNotSavedIsLost) {
  setWord("Device.Int", "int", 42);
  EXPECT_EQ(c_cfm_save_config(), C_RESULT_OK);
  setWord("Device.Int", "int", 43);
  restart();
  EXPECT_EQ(word("Device.Int", "int"), 42U);
}

TEST_F(CStateTest, AttributeIsReadAfterARestart) {
  EXPECT_EQ(c_cfm_set_attr(kDevice, 8), C_RESULT_OK);
  EXPECT_EQ(c_cfm_save_config(), C_RESULT_OK);
  restart();
  std::int32_t attribute = 0;
  EXPECT_EQ(c_cfm_get_attr(kDevice, &attribute), C_RESULT_OK);
  EXPECT_EQ(attribute, 8);
}

TEST_F(CStateTest, InstancesAreWalkedAfterARestartAsTheyWereSaved) {
  setWord("Link.eth0.Mtu", "uint", 9000, C_CFM_CREATE);
  setWord("Link.lo.Mtu", "uint", 0, C_CFM_DELETE);
  EXPECT_EQ(c_cfm_save_config(), C_RESULT_OK);
  restart();
  std::vector<std::string> names;
  EXPECT_EQ(c_cfm_lookup_instance(kLink, keepName, nullptr, nullptr, &names), C_RESULT_OK);
  EXPECT_EQ(names, std::vector<std::string>{"Link.eth0."});
  EXPECT_EQ(word("Link.eth0.Mtu", "uint"), 9000U);
}

}  // namespace
