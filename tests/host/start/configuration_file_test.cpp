// SPDX-License-Identifier: MIT
#include "host/start/configuration_file.h"

#include <chrono>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "tests/host/support/documented_example.h"
#include "tests/host/support/error_text.h"
#include "tests/support/temporary_folder.h"

namespace host {
namespace {

Configuration parse(const std::string& text) {
  return parseConfiguration(text, "config.json");
}

std::string mistakeIn(const std::string& text) {
  return errorOf([&] { parse(text); });
}

std::string refusal(const std::string& text) {
  return "-1023 config.json" + text;
}

std::string objects(const std::string& list) {
  return R"({"objects": [)" + list + "]}";
}

std::string leaf(const std::string& declaration) {
  return objects(R"({"number": 1, "name": "A.", "leaves": {"X": )" + declaration + "}}");
}

std::string mistakeInLeaf(const std::string& declaration) {
  return mistakeIn(leaf(declaration));
}

std::string mistakeInInstances(const std::string& instances) {
  return mistakeIn(objects(R"({"number": 1, "name": "A.", "leaves": {"X": {"type": "uint"}}, "instances": )" +
                           instances + "}"));
}

Object firstObject(const std::string& text) {
  return std::move(parse(text).objects.at(0));
}

std::string defaultOf(const std::string& declaration) {
  return firstObject(leaf(declaration)).leaves.find("X")->default_value;
}

// The values of each instance, by position.
std::map<std::string, std::vector<std::string>> valuesOf(const Object& object) {
  std::map<std::string, std::vector<std::string>> values;
  for (const auto& [name, instance] : object.instances) values.emplace(name, instance.values);
  return values;
}

using Values = std::map<std::string, std::vector<std::string>>;

TEST(ConfigurationTest, EmptyObjectIsAConfiguration) {
  const Configuration configuration = parse("{}");
  EXPECT_TRUE(configuration.objects.empty());
  EXPECT_TRUE(configuration.modules.empty());
  EXPECT_EQ(configuration.heartbeat_limit, std::chrono::milliseconds(1000));
}

TEST(ConfigurationTest, HeartbeatLimitIsRead) {
  EXPECT_EQ(parse(R"({"heartbeat": {"limitMs": 20}})").heartbeat_limit, std::chrono::milliseconds(20));
}

TEST(ConfigurationTest, ModulesKeepTheirOrder) {
  EXPECT_EQ(parse(R"({"modules": ["b.so", "a.so"]})").modules, (std::vector<std::string>{"b.so", "a.so"}));
}

TEST(ConfigurationTest, ObjectIsRead) {
  const Object object =
      firstObject(objects(R"({"number": -7, "name": "A.B.", "attribute": 3, "dynamic": true})"));
  EXPECT_EQ(object.number, -7);
  EXPECT_EQ(object.name, "A.B.");
  EXPECT_EQ(object.attribute, 3);
  EXPECT_TRUE(object.dynamic);
  EXPECT_TRUE(object.leaves.empty());
}

TEST(ConfigurationTest, PlainObjectIsItsOwnInstance) {
  const Object object = firstObject(objects(R"({"number": 1, "name": "A."})"));
  EXPECT_EQ(valuesOf(object), (Values{{"A.", {}}}));
  EXPECT_EQ(object.instances.at("A.").name, "A.");
  EXPECT_EQ(object.attribute, 0);
  EXPECT_FALSE(object.dynamic);
}

TEST(ConfigurationTest, DynamicObjectStartsWithoutInstances) {
  EXPECT_TRUE(
      parse(objects(R"({"number": 1, "name": "A.", "dynamic": true})")).objects.at(0).instances.empty());
}

TEST(ConfigurationTest, ObjectMayHaveNoInstances) {
  EXPECT_TRUE(
      parse(objects(R"({"number": 1, "name": "A.", "instances": {}})")).objects.at(0).instances.empty());
}

TEST(ConfigurationTest, InstancesHaveTheirValues) {
  const Object object = firstObject(
      objects(R"({"number": 1, "name": "A.", "leaves": {"Y": {"type": "str"}, "X": {"type": "uint"}},
                  "instances": {"A.a.": {"X": 5}, "A.b.": {"Y": "y"}}})"));
  EXPECT_EQ(valuesOf(object), (Values{{"A.a.", {"5", ""}}, {"A.b.", {"0", "y"}}}));
  EXPECT_EQ(object.instances.at("A.a.").name, "A.a.");
}

TEST(ConfigurationTest, LeafHasItsTypeAndKind) {
  const Object object = firstObject(leaf(R"({"type": "uint", "computed": true})"));
  EXPECT_STREQ(object.leaves.find("X")->type->name, "uint");
  EXPECT_TRUE(object.leaves.find("X")->computed);
  EXPECT_FALSE(firstObject(leaf(R"({"type": "uint"})")).leaves.find("X")->computed);
}

TEST(ConfigurationTest, DefaultMayBeStringIntegerOrBoolean) {
  EXPECT_EQ(defaultOf(R"({"type": "uint", "default": "007"})"), "007");
  EXPECT_EQ(defaultOf(R"({"type": "uint", "default": 1500})"), "1500");
  EXPECT_EQ(defaultOf(R"({"type": "int", "default": -5})"), "-5");
  EXPECT_EQ(defaultOf(R"({"type": "bool", "default": true})"), "true");
}

TEST(ConfigurationTest, LeafWithoutDefaultHasTheInitialValueOfItsType) {
  EXPECT_EQ(defaultOf(R"({"type": "int"})"), "0");
  EXPECT_EQ(defaultOf(R"({"type": "bool"})"), "false");
  EXPECT_EQ(defaultOf(R"({"type": "datetime"})"), "");
}

TEST(ConfigurationTest, FileIsRead) {
  const TemporaryFolder folder;
  EXPECT_EQ(readConfiguration(folder.write("c.json", R"({"modules": ["a.so"]})")).modules.size(), 1U);
}

TEST(ConfigurationTest, ExampleInTheDocumentationIsAConfiguration) {
  const Configuration configuration = parse(documentedExample("configuration.md"));
  EXPECT_EQ(configuration.objects.size(), 2U);
  const Object& interfaces = configuration.objects.at(1);
  const std::vector<std::string>& values = interfaces.instances.at("Device.Interfaces.eth1.").values;
  EXPECT_EQ(values.at(interfaces.leaves.find("Mtu")->position), "9000");
}

TEST(ConfigurationTest, MissingFileIsRefused) {
  EXPECT_EQ(errorOf([] { readConfiguration("/no/such.json"); }),
            "-1021 /no/such.json: cannot be read: No such file or directory");
}

TEST(ConfigurationTest, FolderIsRefused) {
  const TemporaryFolder folder;
  EXPECT_EQ(errorOf([&] { readConfiguration(folder.path()); }),
            "-1021 " + folder.path() + ": cannot be read: Is a directory");
}

TEST(ConfigurationTest, InvalidJsonIsRefusedWithLineAndColumn) {
  EXPECT_EQ(mistakeIn("{\n  \"objects\": oops\n}"), refusal(":2:14: not valid JSON"));
  EXPECT_EQ(mistakeIn("{\"a\" 1}"), refusal(":1:6: not valid JSON"));
  EXPECT_EQ(mistakeIn("{} x"), refusal(":1:4: not valid JSON"));
  EXPECT_EQ(mistakeIn("\n\n}"), refusal(":3:1: not valid JSON"));
}

TEST(ConfigurationTest, TruncatedJsonIsRefusedAtItsEnd) {
  EXPECT_EQ(mistakeIn(""), refusal(":1:1: not valid JSON"));
  EXPECT_EQ(mistakeIn("{\n"), refusal(":2:1: not valid JSON"));
}

TEST(ConfigurationTest, NumberOutOfRangeIsRefusedAtItsEnd) {
  EXPECT_EQ(mistakeIn("[1e999]"), refusal(":1:6: not valid JSON"));
}

TEST(ConfigurationTest, JsonErrorDoesNotQuoteTheText) {
  EXPECT_EQ(mistakeIn("{\"default\": \"secret\n\"}").find("secret"), std::string::npos);
}

TEST(ConfigurationTest, DeepNestingIsRefused) {
  EXPECT_EQ(mistakeIn(std::string(100000, '[') + std::string(100000, ']')),
            refusal(": /0/0/0/0/0/0/0/0/0/0/0/0/0/0/0/0: nested more than 16 deep"));
}

TEST(ConfigurationTest, ArrayInPlaceOfTheConfigurationIsRefused) {
  EXPECT_EQ(mistakeIn("[]"), refusal(": must be an object"));
}

TEST(ConfigurationTest, UnknownKeyIsRefusedAnywhere) {
  EXPECT_EQ(mistakeIn(R"({"colour": 1})"), refusal(": /colour: unknown key"));
  EXPECT_EQ(mistakeIn(R"({"heartbeat": {"limit": 1}})"), refusal(": /heartbeat/limit: unknown key"));
  EXPECT_EQ(mistakeIn(objects(R"({"number": 1, "name": "A.", "colour": 1})")),
            refusal(": /objects/0/colour: unknown key"));
  EXPECT_EQ(mistakeInLeaf(R"({"type": "str", "colour": 1})"),
            refusal(": /objects/0/leaves/X/colour: unknown key"));
}

TEST(ConfigurationTest, DuplicateKeyIsRefused) {
  EXPECT_EQ(mistakeIn(R"({"modules": [], "modules": []})"), refusal(": /modules: duplicate key"));
  EXPECT_EQ(mistakeIn(objects(R"({"number": 1, "name": "A."}, {"number": 2, "name": "B.", "number": 3})")),
            refusal(": /objects/1/number: duplicate key"));
  EXPECT_EQ(mistakeInInstances(R"({"A.a.": {}, "A.a.": {}})"),
            refusal(": /objects/0/instances/A.a.: duplicate key"));
}

TEST(ConfigurationTest, SlashInAKeyIsEscapedInAPath) {
  EXPECT_EQ(mistakeIn(R"({"a/b~c": 1})"), refusal(": /a~1b~0c: unknown key"));
}

TEST(ConfigurationTest, ValueOfAnotherJsonTypeIsRefused) {
  EXPECT_EQ(mistakeIn(R"({"objects": {}})"), refusal(": /objects: must be an array"));
  EXPECT_EQ(mistakeIn(R"({"objects": [1]})"), refusal(": /objects/0: must be an object"));
  EXPECT_EQ(mistakeIn(R"({"modules": [null]})"), refusal(": /modules/0: must be a string"));
  EXPECT_EQ(mistakeIn(objects(R"({"number": "1", "name": "A."})")),
            refusal(": /objects/0/number: must be a 32-bit integer"));
  EXPECT_EQ(mistakeIn(objects(R"({"number": 1, "name": "A.", "dynamic": 1})")),
            refusal(": /objects/0/dynamic: must be true or false"));
  EXPECT_EQ(mistakeInLeaf(R"([])"), refusal(": /objects/0/leaves/X: must be an object"));
  EXPECT_EQ(mistakeInLeaf(R"({"type": "str", "default": 1.5})"),
            refusal(": /objects/0/leaves/X/default: must be a string, an integer, true or false"));
}

TEST(ConfigurationTest, NumberBeyond32BitsIsRefused) {
  const std::string message = refusal(": /objects/0/number: must be a 32-bit integer");
  EXPECT_EQ(mistakeIn(objects(R"({"number": 2147483648, "name": "A."})")), message);
  EXPECT_EQ(mistakeIn(objects(R"({"number": -2147483649, "name": "A."})")), message);
  EXPECT_EQ(mistakeIn(objects(R"({"number": 18446744073709551615, "name": "A."})")), message);
  EXPECT_EQ(mistakeIn(objects(R"({"number": 1.0, "name": "A."})")), message);
  EXPECT_EQ(
      mistakeIn(objects(R"({"number": -2147483648, "name": "A."}, {"number": 2147483647, "name": "B."})")),
      "");
}

TEST(ConfigurationTest, MissingKeyIsRefused) {
  EXPECT_EQ(mistakeIn(objects(R"({"name": "A."})")), refusal(": /objects/0: \"number\" is missing"));
  EXPECT_EQ(mistakeIn(objects(R"({"number": 1})")), refusal(": /objects/0: \"name\" is missing"));
  EXPECT_EQ(mistakeInLeaf("{}"), refusal(": /objects/0/leaves/X: \"type\" is missing"));
  EXPECT_EQ(mistakeIn(R"({"heartbeat": {}})"), refusal(": /heartbeat: \"limitMs\" is missing"));
}

TEST(ConfigurationTest, HeartbeatLimitBelowOneIsRefused) {
  EXPECT_EQ(mistakeIn(R"({"heartbeat": {"limitMs": 0}})"),
            refusal(": /heartbeat/limitMs: must be 1 or more"));
}

TEST(ConfigurationTest, DuplicateObjectNumberIsRefused) {
  EXPECT_EQ(mistakeIn(objects(R"({"number": 5, "name": "A."}, {"number": 5, "name": "B."})")),
            refusal(": /objects/1/number: 5 is the number of another object"));
}

TEST(ConfigurationTest, DuplicateObjectNameIsRefused) {
  EXPECT_EQ(mistakeIn(objects(R"({"number": 5, "name": "A."}, {"number": 6, "name": "A."})")),
            refusal(": /objects/1/name: \"A.\" is the name of another object"));
}

TEST(ConfigurationTest, InvalidObjectNameIsRefused) {
  for (const std::string name : {"", ".", "A", "A..", ".A.", "A B.", "A.\\n."}) {
    const std::string mistake = mistakeIn(objects(R"({"number": 1, "name": ")" + name + "\"}"));
    EXPECT_NE(mistake.find("is not a valid object name; expected \"NAME.\" or \"NAME.NAME.\""),
              std::string::npos)
        << name;
  }
}

TEST(ConfigurationTest, InvalidLeafNameIsRefused) {
  EXPECT_EQ(mistakeIn(objects(R"({"number": 1, "name": "A.", "leaves": {"X.Y": {"type": "str"}}})")),
            refusal(": /objects/0/leaves/X.Y: not a valid leaf name"));
}

TEST(ConfigurationTest, UnknownTypeIsRefused) {
  EXPECT_EQ(mistakeInLeaf(R"({"type": "text"})"),
            refusal(": /objects/0/leaves/X/type: unknown type \"text\"; known types: int, uint, bool, str, "
                    "ipaddr, macaddr, pwd, base64, datetime"));
}

TEST(ConfigurationTest, InvalidDefaultIsRefused) {
  EXPECT_EQ(mistakeInLeaf(R"({"type": "uint", "default": "abc"})"),
            refusal(": /objects/0/leaves/X/default: \"abc\" is not a uint"));
  EXPECT_EQ(mistakeInLeaf(R"({"type": "ipaddr", "default": 1})"),
            refusal(": /objects/0/leaves/X/default: \"1\" is not an ipaddr"));
}

TEST(ConfigurationTest, InvalidPasswordIsNotShown) {
  EXPECT_EQ(mistakeInLeaf(R"({"type": "pwd", "default": "secret\u0000"})"),
            refusal(": /objects/0/leaves/X/default: the value is not a pwd"));
}

TEST(ConfigurationTest, InvalidInstanceNameIsRefused) {
  EXPECT_EQ(mistakeInInstances(R"({"B.a.": {}})"),
            refusal(": /objects/0/instances/B.a.: not a valid instance name; expected \"A.NAME.\""));
  EXPECT_EQ(mistakeInInstances(R"({"A.a.b.": {}})"),
            refusal(": /objects/0/instances/A.a.b.: not a valid instance name; expected \"A.NAME.\""));
  EXPECT_EQ(mistakeInInstances(R"({"A.": {}})"),
            refusal(": /objects/0/instances/A.: not a valid instance name; expected \"A.NAME.\""));
  EXPECT_EQ(mistakeInInstances(R"({"A.a": {}})"),
            refusal(": /objects/0/instances/A.a: not a valid instance name; expected \"A.NAME.\""));
}

TEST(ConfigurationTest, ValueOfAnUnknownLeafIsRefused) {
  EXPECT_EQ(mistakeInInstances(R"({"A.a.": {"Y": 1}})"),
            refusal(": /objects/0/instances/A.a./Y: unknown leaf"));
}

TEST(ConfigurationTest, InvalidValueOfAnInstanceIsRefused) {
  EXPECT_EQ(mistakeInInstances(R"({"A.a.": {"X": true}})"),
            refusal(": /objects/0/instances/A.a./X: \"true\" is not a uint"));
}

TEST(ConfigurationTest, InstanceWithTheNameOfAnObjectIsRefused) {
  EXPECT_EQ(mistakeIn(objects(R"({"number": 1, "name": "A.", "instances": {"A.B.": {}}},
                                 {"number": 2, "name": "A.B."})")),
            refusal(": /objects/0/instances/A.B.: is the name of an object"));
}

}  // namespace

}  // namespace host
