// SPDX-License-Identifier: MIT
// Configuration and events of a C program on the host context.
#include <errno.h>

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
    "Uint": {"type": "uint"},
    "Bool": {"type": "bool", "default": true},
    "Str": {"type": "str", "default": "text"},
    "Ip": {"type": "ipaddr"},
    "Mac": {"type": "macaddr"},
    "Pwd": {"type": "pwd", "default": "secret"},
    "Data": {"type": "base64"},
    "Time": {"type": "datetime"},
    "Now": {"type": "str", "computed": true, "default": "never"}}},
  {"number": 2, "name": "Link.", "dynamic": true, "leaves": {"Mtu": {"type": "uint", "default": 1500}},
   "instances": {"Link.lo.": {"Mtu": 65536}}}
]})";

using Told = std::vector<std::string>;

int keep(void* user, int id, const char* instance, int operation, const char* leaf) {
  static_cast<Told*>(user)->push_back(std::to_string(id) + ' ' + instance + ' ' + std::to_string(operation) +
                                      ' ' + leaf);
  return 0;
}

int keepEvent(void* user, const char* event, const char* data, const char* source) {
  static_cast<Told*>(user)->push_back(std::string(event) + ' ' + data + ' ' + source);
  return 0;
}

class CConfigTest : public CInterfaceFixture {
 protected:
  CConfigTest() { EXPECT_EQ(initWith(kConfig), C_RESULT_OK); }

  static int setText(const char* name, const char* type, const char* text, int option = 0) {
    return c_cfm_set_value(name, option, type, text, static_cast<unsigned>(std::strlen(text)) + 1);
  }

  static std::string text(const char* name, const char* type) {
    char buffer[64] = {};
    EXPECT_EQ(c_cfm_get_value(name, type, buffer, sizeof buffer), C_RESULT_OK);
    return buffer;
  }

  static std::uint32_t word(const char* name, const char* type) {
    std::uint32_t value = 0;
    EXPECT_EQ(c_cfm_get_value(name, type, &value, sizeof value), C_RESULT_OK);
    return value;
  }

  static int setWord(const char* name, const char* type, std::uint32_t value, int option = 0) {
    return c_cfm_set_value(name, option, type, &value, sizeof value);
  }
};

TEST_F(CConfigTest, DefaultsAreRead) {
  EXPECT_EQ(word("Device.Int", "int"), static_cast<std::uint32_t>(-7));
  EXPECT_EQ(word("Device.Uint", "uint"), 0U);
  EXPECT_EQ(word("Device.Bool", "bool"), 1U);
  EXPECT_EQ(text("Device.Str", "str"), "text");
  EXPECT_EQ(text("Device.Pwd", "pwd"), "secret");
  EXPECT_EQ(text("Device.Time", "datetime"), "");
}

TEST_F(CConfigTest, EveryTypeIsWrittenAndReadBack) {
  EXPECT_EQ(setWord("Device.Int", "int", 42), C_RESULT_OK);
  EXPECT_EQ(word("Device.Int", "int"), 42U);
  EXPECT_EQ(setWord("Device.Bool", "bool", 0), C_RESULT_OK);
  EXPECT_EQ(word("Device.Bool", "bool"), 0U);
  const char* const texts[][3] = {
      {"Device.Str", "str", "other"},
      {"Device.Ip", "ipaddr", "2001:db8::1"},
      {"Device.Mac", "macaddr", "00:1a:2b:3c:4d:5e"},
      {"Device.Pwd", "pwd", "hidden"},
      {"Device.Data", "base64", "QUJD"},
      {"Device.Time", "datetime", "2024-02-29T00:00:00Z"},
  };
  for (const auto& [name, type, value] : texts) {
    EXPECT_EQ(setText(name, type, value), C_RESULT_OK) << name;
    EXPECT_EQ(text(name, type), value);
  }
}

TEST_F(CConfigTest, WholeRangeOfAWordIsKept) {
  for (const std::uint32_t value : {0U, 2147483647U, 2147483648U, 4294967295U}) {
    EXPECT_EQ(setWord("Device.Uint", "uint", value), C_RESULT_OK);
    EXPECT_EQ(word("Device.Uint", "uint"), value);
  }
}

TEST_F(CConfigTest, BadValueIsRefusedAndNothingChanged) {
  EXPECT_EQ(setText("Device.Ip", "ipaddr", "192.0.2.1"), C_RESULT_OK);
  EXPECT_EQ(setText("Device.Ip", "ipaddr", "192.0.2.999"), C_RESULT_PARAM);
  EXPECT_EQ(text("Device.Ip", "ipaddr"), "192.0.2.1");
}

TEST_F(CConfigTest, UnknownLeafIsRefused) {
  EXPECT_EQ(setText("Device.Colour", "str", "red"), C_RESULT_NOT_INIT);
}

TEST_F(CConfigTest, OtherTypeIsRefused) {
  EXPECT_EQ(setText("Device.Ip", "str", "x"), C_RESULT_PARAM);
}

TEST_F(CConfigTest, ObserverIsToldUntilItIsUnregistered) {
  Told told;
  c_cfm_regist_observer(kDevice, keep, &told);
  setText("Device.Str", "str", "other");
  setText("Device.Str", "str", "other");
  EXPECT_EQ(told, Told{"1 Device. 2 Str"});
  c_cfm_unregist_observer(kDevice, keep);
  setText("Device.Str", "str", "third");
  EXPECT_EQ(told.size(), 1U);
}

TEST_F(CConfigTest, InstancesComeAndGo) {
  Told told;
  c_cfm_regist_observer(kLink, keep, &told);
  EXPECT_EQ(setWord("Link.eth0.Mtu", "uint", 9000), C_RESULT_NOT_FOUND);
  EXPECT_EQ(setWord("Link.eth0.Mtu", "uint", 9000, C_CFM_CREATE), C_RESULT_OK);
  EXPECT_EQ(word("Link.eth0.Mtu", "uint"), 9000U);
  EXPECT_EQ(setWord("Link.eth0.Mtu", "uint", 0, C_CFM_DELETE), C_RESULT_OK);
  EXPECT_EQ(word("Link.eth0.Mtu", "uint"), 1500U);
  EXPECT_EQ(told, (Told{"2 Link.eth0. 1 ", "2 Link.eth0. 2 Mtu", "2 Link.eth0. 3 "}));
}

TEST_F(CConfigTest, RegisteringEntersTheInstancesIntoTheCache) {
  int mine = 0;
  Told told;
  c_dbc_add_userdata(kLink, "Link.lo.", &mine);
  c_cfm_regist_observer(kLink, keep, &told);
  EXPECT_EQ(c_dbc_get_userdata(kLink, "Link.lo."), nullptr);
}

TEST_F(CConfigTest, ObserverOfAnUnknownObjectDoesNoHarm) {
  Told told;
  c_cfm_regist_observer(99, keep, &told);
  setText("Device.Str", "str", "other");
  c_cfm_unregist_observer(99, keep);
  EXPECT_TRUE(told.empty());
}

TEST_F(CConfigTest, AttributeIsKeptForEachObject) {
  std::int32_t attribute = 0;
  EXPECT_EQ(c_cfm_get_attr(kDevice, &attribute), C_RESULT_OK);
  EXPECT_EQ(attribute, 5);
  EXPECT_EQ(c_cfm_set_attr(kLink, 8), C_RESULT_OK);
  EXPECT_EQ(c_cfm_get_attr(kLink, &attribute), C_RESULT_OK);
  EXPECT_EQ(attribute, 8);
  EXPECT_EQ(c_cfm_set_attr(99, 8), C_RESULT_NOT_FOUND);
}

void provide(int id, const char* instance, const char* leaf, void* user, void* handle) {
  std::string answer = *static_cast<std::string*>(user) + std::to_string(id) + ' ' + instance + ' ' + leaf;
  c_cfm_data_provider_set(handle, "str", answer.data());
}

TEST_F(CConfigTest, ComputedLeafComesFromItsProvider) {
  std::string user = "asked: ";
  EXPECT_EQ(text("Device.Now", "str"), "never");
  c_cfm_data_provider_regist(kDevice, provide, &user);
  EXPECT_EQ(text("Device.Now", "str"), "asked: 1 Device. Now");
  EXPECT_EQ(setText("Device.Now", "str", "x"), C_RESULT_PARAM);
}

int keepName(int id, char* name, void*, c_pass_fn3, c_pass_fn4, void* names) {
  static_cast<Told*>(names)->push_back(std::to_string(id) + ' ' + name);
  return 0;
}

TEST_F(CConfigTest, InstancesAreWalked) {
  Told names;
  setWord("Link.eth0.Mtu", "uint", 9000, C_CFM_CREATE);
  EXPECT_EQ(c_cfm_lookup_instance(kLink, keepName, nullptr, nullptr, &names), C_RESULT_OK);
  EXPECT_EQ(names, (Told{"2 Link.eth0.", "2 Link.lo."}));
}

TEST_F(CConfigTest, RelativeNamesReachTheTree) {
  std::uint32_t mtu = 9000;
  EXPECT_EQ(c_cfm_set_value_v2("Link.lo.", "", "Mtu", "uint", &mtu, sizeof mtu, 0), C_RESULT_OK);
  EXPECT_EQ(c_cfm_get_value_v2("Link.lo.Mtu", "PARENT.", "Mtu", "uint", &mtu, sizeof mtu), C_RESULT_OK);
  EXPECT_EQ(mtu, 9000U);
}

TEST_F(CConfigTest, SavingSucceeds) {
  EXPECT_EQ(c_cfm_save_config(), C_RESULT_OK);
}

TEST_F(CConfigTest, EventReachesItsObserversWithTheProgramAsSource) {
  Told told;
  c_event_regist_observer("up", keepEvent, &told);
  c_event_notify("up", "eth0");
  c_event_notify("down", "eth0");
  EXPECT_EQ(told, Told{"up eth0 " + std::string(program_invocation_short_name)});
}

TEST_F(CConfigTest, UnregisteredObserverIsNotTold) {
  Told told;
  c_event_regist_observer("up", keepEvent, &told);
  c_event_unregist_observer("up", keepEvent);
  c_event_notify("up", "eth0");
  EXPECT_TRUE(told.empty());
}

TEST_F(CConfigTest, PasswordIsInNoDiagnostic) {
  c_context_debug_switch(1);
  setText("Device.Pwd", "str", "secret");
  setText("Device.Pwd", "pwd", "secret2");
  ASSERT_EQ(records().size(), 1U);  // of the wrong type
  EXPECT_EQ(records()[0].find("se"), std::string::npos);
}

}  // namespace
