// SPDX-License-Identifier: MIT
// State that is restored at the next start, also with a changed configuration.
#include "host/state/state_file.h"

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "binding/handlers.h"
#include "host/include/cpp2c_host.h"
#include "include_c"
#include "tests/host/state/stateful_config.h"
#include "tests/host/support/memory_log.h"
#include "tests/support/temporary_folder.h"

namespace host {
namespace {

constexpr int kTime = 1;
constexpr int kLink = 2;  // dynamic, with one instance in the configuration

const char kConfig[] = R"({"objects": [
  {"number": 1, "name": "Time.", "attribute": 7, "leaves": {
    "Server": {"type": "str", "default": "pool"},
    "Offset": {"type": "int"},
    "Key": {"type": "pwd"}}},
  {"number": 2, "name": "Link.", "dynamic": true, "leaves": {
    "Mtu": {"type": "uint", "default": 1500},
    "Note": {"type": "str"}},
   "instances": {"Link.lo.": {"Mtu": 65536, "Note": "loop"}}}
]})";

using Records = std::vector<std::string>;

class SavedStateTest : public testing::Test {
 protected:
  StatefulConfig start(const char* config = kConfig) { return {folder_.file("state.db"), config, log_}; }

  TemporaryFolder folder_;
  MemoryLog log_;
};

TEST_F(SavedStateTest, UnsavedValueIsLost) {
  start().set("Time.Server", "other");
  EXPECT_EQ(start().valueOf("Time.Server"), "pool");
}

TEST_F(SavedStateTest, SavedValueReplacesTheDefault) {
  {
    StatefulConfig config = start();
    EXPECT_EQ(config.set("Time.Server", "other"), C_RESULT_OK);
    EXPECT_EQ(config.save(), C_RESULT_OK);
  }
  StatefulConfig config = start();
  EXPECT_EQ(config.valueOf("Time.Server"), "other");
  EXPECT_EQ(config.valueOf("Time.Offset"), "0");
  EXPECT_TRUE(log_.records.empty());
}

TEST_F(SavedStateTest, LaterSaveReplacesAnEarlierOne) {
  {
    StatefulConfig config = start();
    for (const char* server : {"first", "second", "pool"}) {
      config.set("Time.Server", server);
      EXPECT_EQ(config.save(), C_RESULT_OK);
    }
  }
  const char changed_default[] = R"({"objects": [{"number": 1, "name": "Time.", "leaves": {
    "Server": {"type": "str", "default": "new"}}}]})";
  EXPECT_EQ(start(changed_default).valueOf("Time.Server"), "pool");
}

// By default, SQLite never shrinks its log.
TEST_F(SavedStateTest, LogShrinksAfterALargeSave) {
  const std::string log = folder_.file("state.db-wal");
  StatefulConfig config = start();
  config.set("Time.Server", std::string(300000, 'x'));
  EXPECT_EQ(config.save(), C_RESULT_OK);
  EXPECT_GT(std::filesystem::file_size(log), 300000U);
  for (const char* server : {"short", "shorter"}) {
    config.set("Time.Server", server);
    EXPECT_EQ(config.save(), C_RESULT_OK);
  }
  EXPECT_LE(std::filesystem::file_size(log), 65536U);
}

TEST_F(SavedStateTest, AnyTextIsRestored) {
  const std::string text = "\xc3\xa4 'quoted' \"twice\"\n%s; -- \x01";
  {
    StatefulConfig config = start();
    config.set("Time.Server", text);
    config.set("Time.Offset", "007");
    config.set("Time.Key", "");
    config.set("Link.lo.Note", "");
    EXPECT_EQ(config.save(), C_RESULT_OK);
  }
  StatefulConfig config = start();
  EXPECT_EQ(config.valueOf("Time.Server"), text);
  EXPECT_EQ(config.valueOf("Time.Offset"), "007");
  EXPECT_EQ(config.valueOf("Link.lo.Note"), "");
}

TEST_F(SavedStateTest, AttributeIsSaved) {
  {
    StatefulConfig config = start();
    config->setAttr(kTime, -2147483647 - 1);
    EXPECT_EQ(config.save(), C_RESULT_OK);
  }
  StatefulConfig config = start();
  EXPECT_EQ(config.attributeOf(kTime), -2147483647 - 1);
  EXPECT_EQ(config.attributeOf(kLink), 0);
}

TEST_F(SavedStateTest, AddedInstanceIsSavedWithItsValues) {
  {
    StatefulConfig config = start();
    config->setValue("Link.eth0.Mtu", "9000", C_CFM_CREATE);
    config->addInstance("Link.eth1.");
    EXPECT_EQ(config.save(), C_RESULT_OK);
    config.set("Link.eth0.Note", "uplink");
    EXPECT_EQ(config.save(), C_RESULT_OK);
  }
  StatefulConfig config = start();
  EXPECT_EQ(config.instancesOf(kLink), "Link.eth0. Link.eth1. Link.lo. ");
  EXPECT_EQ(config.valueOf("Link.eth0.Mtu"), "9000");
  EXPECT_EQ(config.valueOf("Link.eth0.Note"), "uplink");
  EXPECT_EQ(config.valueOf("Link.eth1.Mtu"), "1500");
}

TEST_F(SavedStateTest, DeletedInstanceStaysDeletedAlthoughConfigured) {
  {
    StatefulConfig config = start();
    config->deleteInstance("Link.lo.");
    EXPECT_EQ(config.save(), C_RESULT_OK);
  }
  EXPECT_EQ(start().instancesOf(kLink), "");
  EXPECT_EQ(start().instancesOf(kLink), "");
  EXPECT_TRUE(log_.records.empty());
}

TEST_F(SavedStateTest, AddedAndDeletedInstanceIsNotSaved) {
  {
    StatefulConfig config = start();
    config->setValue("Link.eth0.Mtu", "9000", C_CFM_CREATE);
    config.save();
    config->deleteInstance("Link.eth0.");
    EXPECT_EQ(config.save(), C_RESULT_OK);
  }
  const char lists_it[] = R"({"objects": [{"number": 2, "name": "Link.", "dynamic": true,
    "leaves": {"Mtu": {"type": "uint"}}, "instances": {"Link.eth0.": {"Mtu": 1}}}]})";
  EXPECT_EQ(start(lists_it).valueOf("Link.eth0.Mtu"), "1");
  EXPECT_TRUE(log_.records.empty());
}

TEST_F(SavedStateTest, ReaddedInstanceHasItsDefaults) {
  {
    StatefulConfig config = start();
    config.set("Link.lo.Note", "old");
    config.save();
  }
  {
    StatefulConfig config = start();
    config->deleteInstance("Link.lo.");
    config->setValue("Link.lo.Mtu", "9000", C_CFM_CREATE);
    EXPECT_EQ(config.save(), C_RESULT_OK);
  }
  StatefulConfig config = start();
  EXPECT_EQ(config.valueOf("Link.lo.Mtu"), "9000");
  EXPECT_EQ(config.valueOf("Link.lo.Note"), "");
}

TEST_F(SavedStateTest, ReaddedInstanceIsRestoredAlthoughItsDeletionWasSaved) {
  {
    StatefulConfig config = start();
    config->deleteInstance("Link.lo.");
    config.save();
    config->addInstance("Link.lo.");
    EXPECT_EQ(config.save(), C_RESULT_OK);
  }
  {
    StatefulConfig config = start();
    EXPECT_EQ(config.valueOf("Link.lo.Mtu"), "1500");
    config->deleteInstance("Link.lo.");
    EXPECT_EQ(config.save(), C_RESULT_OK);
  }
  EXPECT_EQ(start().instancesOf(kLink), "");
}

TEST_F(SavedStateTest, DeletionLeavesInstancesWithALongerNameAlone) {
  {
    StatefulConfig config = start();
    config->setValue("Link.lo2.Note", "kept", C_CFM_CREATE);
    config.save();
    config->deleteInstance("Link.lo.");
    config.save();
  }
  StatefulConfig config = start();
  EXPECT_EQ(config.instancesOf(kLink), "Link.lo2. ");
  EXPECT_EQ(config.valueOf("Link.lo2.Note"), "kept");
}

TEST_F(SavedStateTest, ObserverMaySaveTheChangeItReceives) {
  class Saver final : public ICfmObserver {
   public:
    explicit Saver(StatefulConfig& config) : config_(config) {}
    int update(int, std::string, int, std::string) override { return config_.save(); }

   private:
    StatefulConfig& config_;
  };
  {
    StatefulConfig config = start();
    Saver saver(config);
    config->registObserver(kTime, &saver);
    config->registObserver(kLink, &saver);
    config.set("Time.Server", "other");
    config->setValue("Link.eth0.Mtu", "9000", C_CFM_CREATE);
    config->deleteInstance("Link.lo.");
  }
  StatefulConfig config = start();
  EXPECT_EQ(config.valueOf("Time.Server"), "other");
  EXPECT_EQ(config.instancesOf(kLink), "Link.eth0. ");
  EXPECT_EQ(config.valueOf("Link.eth0.Mtu"), "9000");
}

// Saves state of every kind, which a later configuration does not accept.
class UnfitStateTest : public SavedStateTest {
 protected:
  UnfitStateTest() {
    StatefulConfig config = start();
    config.set("Time.Server", "other");
    config.set("Time.Offset", "12");
    config.set("Time.Key", "hidden");
    config->setAttr(kTime, 9);
    config->setValue("Link.eth0.Mtu", "9000", C_CFM_CREATE);
    config->deleteInstance("Link.lo.");
    config.save();
  }
};

TEST_F(UnfitStateTest, ValueOfAMissingLeafIsIgnored) {
  start(R"({"objects": [{"number": 1, "name": "Time.", "leaves": {
    "Server": {"type": "str"}, "Offset": {"type": "int"}}},
    {"number": 2, "name": "Link.", "dynamic": true, "leaves": {"Mtu": {"type": "uint"}}}]})");
  EXPECT_EQ(log_.records, Records{"4 state: Time.Key: the saved value is ignored: the leaf does not exist"});
}

TEST_F(UnfitStateTest, ValueOfAnotherTypeIsIgnored) {
  StatefulConfig config = start(R"({"objects": [{"number": 1, "name": "Time.", "leaves": {
    "Server": {"type": "str"}, "Offset": {"type": "uint"}, "Key": {"type": "str"}}},
    {"number": 2, "name": "Link.", "dynamic": true, "leaves": {"Mtu": {"type": "uint"}}}]})");
  EXPECT_EQ(config.valueOf("Time.Offset"), "0");
  EXPECT_EQ(
      log_.records,
      (Records{
          "4 state: Time.Key: the saved value is ignored: its type is \"pwd\", the leaf's \"str\"",
          "4 state: Time.Offset: the saved value is ignored: its type is \"int\", the leaf's \"uint\""}));
}

TEST_F(UnfitStateTest, ValueOfAComputedLeafIsIgnored) {
  StatefulConfig config = start(R"({"objects": [{"number": 1, "name": "Time.", "leaves": {
    "Server": {"type": "str"}, "Offset": {"type": "int", "computed": true}, "Key": {"type": "pwd"}}},
    {"number": 2, "name": "Link.", "dynamic": true, "leaves": {"Mtu": {"type": "uint"}}}]})");
  EXPECT_EQ(config.valueOf("Time.Offset"), "0");
  EXPECT_EQ(log_.records, Records{"4 state: Time.Offset: the saved value is ignored: the leaf is computed"});
}

TEST_F(UnfitStateTest, InvalidValueIsIgnoredAndNotShown) {
  Database(folder_.file("state.db")).execute("UPDATE value SET value = 'x' || char(0) WHERE type <> 'uint'");
  StatefulConfig config = start();
  EXPECT_EQ(config.valueOf("Time.Key"), "");
  EXPECT_EQ(config.valueOf("Time.Offset"), "0");
  EXPECT_EQ(log_.records,
            (Records{"4 state: Time.Key: the saved value is ignored: it is not a value of type \"pwd\"",
                     "4 state: Time.Offset: the saved value is ignored: it is not a value of type \"int\"",
                     "4 state: Time.Server: the saved value is ignored: it is not a value of type \"str\""}));
}

TEST_F(UnfitStateTest, InstancesOfAMissingObjectAreIgnored) {
  start(R"({"objects": [{"number": 1, "name": "Time.", "leaves": {
    "Server": {"type": "str"}, "Offset": {"type": "int"}, "Key": {"type": "pwd"}}}]})");
  EXPECT_EQ(log_.records,
            (Records{"4 state: Link.eth0.: the saved instance is ignored: it was added to an object that "
                     "does not exist or is not dynamic",
                     "4 state: Link.lo.: the saved instance is ignored: it was deleted from an object that "
                     "does not exist or is not dynamic",
                     "4 state: Link.eth0.Mtu: the saved value is ignored: the leaf does not exist"}));
}

TEST_F(UnfitStateTest, AttributeOfAMissingObjectIsIgnored) {
  start(
      R"({"objects": [{"number": 2, "name": "Link.", "dynamic": true, "leaves": {"Mtu": {"type": "uint"}}}]})");
  ASSERT_EQ(log_.records.size(), 4U);
  EXPECT_EQ(log_.records.back(), "4 state: Time.: the saved attribute is ignored: the object does not exist");
}

TEST_F(UnfitStateTest, ObjectThatIsNoLongerDynamicHasItsConfiguredInstances) {
  StatefulConfig config = start(R"({"objects": [{"number": 1, "name": "Time.", "leaves": {
    "Server": {"type": "str"}, "Offset": {"type": "int"}, "Key": {"type": "pwd"}}},
    {"number": 2, "name": "Link.", "leaves": {"Mtu": {"type": "uint"}}, "instances": {"Link.lo.": {}}}]})");
  EXPECT_EQ(config.instancesOf(kLink), "Link.lo. ");
  EXPECT_EQ(log_.records,
            (Records{"4 state: Link.eth0.: the saved instance is ignored: it was added to an object that "
                     "does not exist or is not dynamic",
                     "4 state: Link.lo.: the saved instance is ignored: it was deleted from an object that "
                     "does not exist or is not dynamic",
                     "4 state: Link.eth0.Mtu: the saved value is ignored: the leaf does not exist"}));
}

TEST_F(UnfitStateTest, IgnoredStateStaysInTheFile) {
  {
    StatefulConfig config = start(R"({"objects": []})");
    EXPECT_EQ(log_.records.size(), 7U);
  }
  log_.records.clear();
  StatefulConfig config = start();
  EXPECT_EQ(config.valueOf("Time.Offset"), "12");
  EXPECT_EQ(config.valueOf("Time.Key"), "hidden");
  EXPECT_EQ(config.attributeOf(kTime), 9);
  EXPECT_EQ(config.instancesOf(kLink), "Link.eth0. ");
  EXPECT_TRUE(log_.records.empty());
}

TEST_F(UnfitStateTest, ReaddedInstanceDoesNotInheritIgnoredValues) {
  {
    StatefulConfig config = start(R"({"objects": [{"number": 2, "name": "Link.", "dynamic": true,
      "leaves": {"Note": {"type": "str"}}}]})");
    config->deleteInstance("Link.eth0.");
    config->addInstance("Link.eth0.");
    EXPECT_EQ(config.save(), C_RESULT_OK);
  }
  EXPECT_EQ(start().valueOf("Link.eth0.Mtu"), "1500");
}

}  // namespace

}  // namespace host
