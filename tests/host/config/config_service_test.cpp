// SPDX-License-Identifier: MIT
#include "host/config/config_service.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "binding/handlers.h"
#include "host/include/cpp2c_host.h"
#include "host/start/configuration_file.h"
#include "include_c"
#include "tests/host/support/services.h"

namespace host {
namespace {

constexpr int kTime = 1;  // one instance
constexpr int kPort = 2;  // two instances, not dynamic
constexpr int kLink = 3;  // dynamic
constexpr int kUnknown = 99;

const char kTree[] = R"({"objects": [
  {"number": 1, "name": "Time.", "attribute": 7, "leaves": {
    "Server": {"type": "str", "default": "pool"},
    "Offset": {"type": "int"},
    "Now": {"type": "datetime", "computed": true, "default": "2000-01-01T00:00:00"}}},
  {"number": 2, "name": "Port.", "leaves": {"Mtu": {"type": "uint", "default": 1500}},
   "instances": {"Port.b.": {}, "Port.a.": {"Mtu": 9000}}},
  {"number": 3, "name": "Link.", "dynamic": true, "leaves": {
    "Up": {"type": "bool"}, "Speed": {"type": "uint", "computed": true, "default": 10}}},
  {"number": 4, "name": "Link.All.", "leaves": {"Count": {"type": "uint"}}}
]})";

// Records each call, then calls `then` once.
class Observer final : public ICfmObserver {
 public:
  int update(int id, std::string instance, int operation, std::string leaf) override {
    calls.push_back(std::to_string(id) + ' ' + instance + ' ' + std::to_string(operation) + ' ' + leaf);
    const std::function<void()> once = std::move(then);
    then = nullptr;
    if (once) once();
    return 0;
  }

  std::vector<std::string> calls;
  std::function<void()> then;
};

class Provider final : public IDyncDataProvider {
 public:
  explicit Provider(std::string answer) : answer_(std::move(answer)) {}

  std::string dataGet(int id, std::string instance, std::string leaf) override {
    calls.push_back(std::to_string(id) + ' ' + instance + ' ' + leaf);
    return answer_;
  }

  std::vector<std::string> calls;

 private:
  const std::string answer_;
};

using Calls = std::vector<std::string>;

class ConfigServiceTest : public testing::Test {
 protected:
  std::string valueOf(const std::string& fullname) {
    ICfmNode* node = config_.getNode(fullname);
    if (node == nullptr) return "no such leaf";
    std::string value = node->getValue();
    EXPECT_EQ(config_.releaseNode(node), C_RESULT_OK);
    return value;
  }

  std::vector<std::string> instancesOf(int number) {
    std::vector<std::string> names;
    ICfmIterator* iterator = config_.instanceIterator(number);
    if (iterator == nullptr) return names;
    do {
      names.push_back(iterator->name());
    } while (iterator->next() != 0);
    EXPECT_EQ(config_.releaseIterator(iterator), C_RESULT_OK);
    return names;
  }

  Services services_;
  ConfigService config_{Tree(parseConfiguration(kTree, "test").objects), services_.registry};
  Observer observer_;
};

TEST_F(ConfigServiceTest, LeafOfAPlainObjectIsFound) {
  EXPECT_EQ(valueOf("Time.Server"), "pool");
}

TEST_F(ConfigServiceTest, LeafOfAnInstanceIsFound) {
  EXPECT_EQ(valueOf("Port.a.Mtu"), "9000");
  EXPECT_EQ(valueOf("Port.b.Mtu"), "1500");
}

TEST_F(ConfigServiceTest, NodeHasTypeValueAndLength) {
  ICfmNode* node = config_.getNode("Time.Server");
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->getType(), "str");
  EXPECT_EQ(node->getValue(), "pool");
  EXPECT_EQ(node->getLength(), 4U);
  config_.releaseNode(node);
}

TEST_F(ConfigServiceTest, UnknownNameHasNoNode) {
  for (const char* name : {"", ".", "Time", "Time.", "Time.Colour", "Server", "time.Server", "Time..Server",
                           "Time.Server.", "Port.Mtu", "Port.c.Mtu", "Port.a.b.Mtu", "Link.Up", "Link..Up",
                           "Link.a b.Up", "Link.a.b.Up", "Link.All.Up", ".Time.Server"}) {
    EXPECT_EQ(config_.getNode(name), nullptr) << name;
  }
}

TEST_F(ConfigServiceTest, NodeIsReleasedOnce) {
  ICfmNode* node = config_.getNode("Time.Server");
  EXPECT_EQ(config_.releaseNode(node), C_RESULT_OK);
  EXPECT_EQ(config_.releaseNode(node), C_RESULT_PARAM);
}

TEST_F(ConfigServiceTest, ForeignNodeIsRefused) {
  ConfigService other(Tree(parseConfiguration(kTree, "test").objects), services_.registry);
  EXPECT_EQ(config_.releaseNode(other.getNode("Time.Server")), C_RESULT_PARAM);
  EXPECT_EQ(config_.releaseNode(nullptr), C_RESULT_PARAM);
}

TEST_F(ConfigServiceTest, UnreleasedNodeIsFreedWithTheService) {
  EXPECT_NE(config_.getNode("Time.Server"), nullptr);
  EXPECT_NE(config_.instanceIterator(kPort), nullptr);
}

// The second node is not kept where the first one is.
TEST_F(ConfigServiceTest, SeveralNodesAreOnLoanAtOnce) {
  ICfmNode* server = config_.getNode("Time.Server");
  ICfmNode* mtu = config_.getNode("Port.a.Mtu");
  EXPECT_EQ(config_.releaseNode(server), C_RESULT_OK);
  EXPECT_EQ(mtu->getValue(), "9000");
  EXPECT_EQ(config_.releaseNode(mtu), C_RESULT_OK);
  EXPECT_EQ(config_.releaseNode(mtu), C_RESULT_PARAM);
}

TEST_F(ConfigServiceTest, NodeOfADeletedInstanceHasTheDefault) {
  config_.addInstance("Link.a.");
  config_.setValue("Link.a.Up", "true", 0);
  ICfmNode* node = config_.getNode("Link.a.Up");
  config_.deleteInstance("Link.a.");
  EXPECT_EQ(node->getValue(), "false");
  config_.releaseNode(node);
}

TEST_F(ConfigServiceTest, NodeReadsAnInstanceThatWasAddedAgain) {
  config_.addInstance("Link.a.");
  ICfmNode* node = config_.getNode("Link.a.Up");
  config_.deleteInstance("Link.a.");
  config_.addInstance("Link.a.");
  config_.setValue("Link.a.Up", "true", 0);
  EXPECT_EQ(node->getValue(), "true");
  config_.releaseNode(node);
}

TEST_F(ConfigServiceTest, WalkKeepsTheNamesThatItBeganWith) {
  for (const char* name : {"Link.a.", "Link.c.", "Link.d."}) config_.addInstance(name);
  ICfmIterator* iterator = config_.instanceIterator(kLink);
  ASSERT_NE(iterator, nullptr);
  EXPECT_EQ(iterator->name(), "Link.a.");
  EXPECT_EQ(config_.deleteInstance("Link.c."), C_RESULT_OK);
  EXPECT_EQ(config_.addInstance("Link.b."), C_RESULT_OK);
  EXPECT_EQ(config_.addInstance("Link.e."), C_RESULT_OK);
  EXPECT_NE(iterator->next(), 0);
  EXPECT_EQ(iterator->name(), "Link.c.");
  EXPECT_NE(iterator->next(), 0);
  EXPECT_EQ(iterator->name(), "Link.d.");
  EXPECT_EQ(iterator->next(), 0);
  EXPECT_EQ(config_.releaseIterator(iterator), C_RESULT_OK);
  EXPECT_EQ(instancesOf(kLink), (std::vector<std::string>{"Link.a.", "Link.b.", "Link.d.", "Link.e."}));
}

TEST_F(ConfigServiceTest, NodeKeepsTheValueOnceRead) {
  ICfmNode* node = config_.getNode("Time.Server");
  EXPECT_EQ(node->getLength(), 4U);
  config_.setValue("Time.Server", "other.example", 0);
  EXPECT_EQ(node->getValue(), "pool");
  config_.releaseNode(node);
}

TEST_F(ConfigServiceTest, InstancesAreSortedByName) {
  EXPECT_EQ(instancesOf(kPort), (std::vector<std::string>{"Port.a.", "Port.b."}));
}

TEST_F(ConfigServiceTest, PlainObjectIsItsOwnInstance) {
  EXPECT_EQ(instancesOf(kTime), std::vector<std::string>{"Time."});
}

TEST_F(ConfigServiceTest, ObjectWithoutInstancesHasNoIterator) {
  EXPECT_EQ(config_.instanceIterator(kLink), nullptr);
  EXPECT_EQ(config_.instanceIterator(kUnknown), nullptr);
}

TEST_F(ConfigServiceTest, IteratorAtItsEndStaysThere) {
  ICfmIterator* iterator = config_.instanceIterator(kTime);
  EXPECT_EQ(iterator->next(), 0);
  EXPECT_EQ(iterator->next(), 0);
  EXPECT_EQ(iterator->name(), "");
  config_.releaseIterator(iterator);
}

TEST_F(ConfigServiceTest, IteratorIsReleasedOnce) {
  ICfmIterator* iterator = config_.instanceIterator(kTime);
  EXPECT_EQ(config_.releaseIterator(iterator), C_RESULT_OK);
  EXPECT_EQ(config_.releaseIterator(iterator), C_RESULT_PARAM);
  EXPECT_EQ(config_.releaseIterator(nullptr), C_RESULT_PARAM);
}

TEST_F(ConfigServiceTest, WrittenValueIsRead) {
  EXPECT_EQ(config_.setValue("Port.b.Mtu", "576", 0), C_RESULT_OK);
  EXPECT_EQ(valueOf("Port.b.Mtu"), "576");
  EXPECT_EQ(valueOf("Port.a.Mtu"), "9000");
}

TEST_F(ConfigServiceTest, ValueIsStoredAsWritten) {
  EXPECT_EQ(config_.setValue("Port.b.Mtu", "-1", 0), C_RESULT_OK);
  EXPECT_EQ(valueOf("Port.b.Mtu"), "-1");
}

TEST_F(ConfigServiceTest, InvalidValueIsRefused) {
  EXPECT_EQ(config_.setValue("Time.Offset", "much", 0), C_RESULT_PARAM);
  EXPECT_EQ(valueOf("Time.Offset"), "0");
}

TEST_F(ConfigServiceTest, WriteToAnUnknownNameIsRefused) {
  EXPECT_EQ(config_.setValue("Time.Colour", "red", 0), C_RESULT_NOT_FOUND);
  EXPECT_EQ(config_.setValue("Port.c.Mtu", "1", C_CFM_CREATE), C_RESULT_NOT_FOUND);
}

TEST_F(ConfigServiceTest, UnknownOptionIsRefused) {
  EXPECT_EQ(config_.setValue("Time.Server", "x", C_CFM_CREATE | C_CFM_DELETE), C_RESULT_PARAM);
  EXPECT_EQ(config_.setValue("Time.Server", "x", -1), C_RESULT_PARAM);
  EXPECT_EQ(valueOf("Time.Server"), "pool");
}

TEST_F(ConfigServiceTest, ObserverIsCalledForAChange) {
  config_.registObserver(kPort, &observer_);
  config_.setValue("Port.a.Mtu", "1", 0);
  EXPECT_EQ(observer_.calls, Calls{"2 Port.a. 2 Mtu"});
}

TEST_F(ConfigServiceTest, ObserverReadsTheNewValue) {
  std::string seen;
  observer_.then = [&] { seen = valueOf("Port.a.Mtu"); };
  config_.registObserver(kPort, &observer_);
  config_.setValue("Port.a.Mtu", "1", 0);
  EXPECT_EQ(seen, "1");
}

TEST_F(ConfigServiceTest, ObserverIsNotCalledForAnEqualValue) {
  config_.registObserver(kPort, &observer_);
  EXPECT_EQ(config_.setValue("Port.a.Mtu", "9000", 0), C_RESULT_OK);
  EXPECT_EQ(observer_.calls, Calls{});
}

TEST_F(ConfigServiceTest, ObserverIsNotCalledForARefusedValue) {
  config_.registObserver(kPort, &observer_);
  config_.setValue("Port.a.Mtu", "much", 0);
  EXPECT_EQ(observer_.calls, Calls{});
}

TEST_F(ConfigServiceTest, ObserverIsNotCalledForOtherObjects) {
  config_.registObserver(kPort, &observer_);
  config_.setValue("Time.Server", "other", 0);
  EXPECT_EQ(observer_.calls, Calls{});
}

TEST_F(ConfigServiceTest, UnregisteredObserverIsNotCalled) {
  config_.registObserver(kPort, &observer_);
  EXPECT_EQ(config_.unregistObserver(kPort, &observer_), C_RESULT_OK);
  config_.setValue("Port.a.Mtu", "1", 0);
  EXPECT_EQ(observer_.calls, Calls{});
}

TEST_F(ConfigServiceTest, ObserverOfAnUnknownObjectIsRefused) {
  EXPECT_EQ(config_.registObserver(kUnknown, &observer_), C_RESULT_NOT_FOUND);
  EXPECT_EQ(config_.unregistObserver(kPort, &observer_), C_RESULT_NOT_FOUND);
}

TEST_F(ConfigServiceTest, NullObserverAndProviderAreRefused) {
  EXPECT_EQ(config_.registObserver(kPort, nullptr), C_RESULT_PARAM);
  EXPECT_EQ(config_.registDataProvider(kPort, nullptr), C_RESULT_PARAM);
}

TEST_F(ConfigServiceTest, ObserverMayWrite) {
  observer_.then = [&] { config_.setValue("Port.b.Mtu", "2", 0); };
  config_.registObserver(kPort, &observer_);
  config_.setValue("Port.a.Mtu", "1", 0);
  EXPECT_EQ(observer_.calls, (Calls{"2 Port.a. 2 Mtu", "2 Port.b. 2 Mtu"}));
}

TEST_F(ConfigServiceTest, ObserverMayUnregisterItselfAndOthers) {
  Observer other;
  observer_.then = [&] {
    config_.unregistObserver(kPort, &observer_);
    config_.unregistObserver(kPort, &other);
  };
  config_.registObserver(kPort, &observer_);
  config_.registObserver(kPort, &other);
  config_.setValue("Port.a.Mtu", "1", 0);
  EXPECT_EQ(observer_.calls.size(), 1U);
  EXPECT_EQ(other.calls, Calls{});
}

TEST_F(ConfigServiceTest, LeafOfAMissingInstanceHasItsDefault) {
  EXPECT_EQ(valueOf("Link.a.Up"), "false");
  EXPECT_EQ(config_.instanceIterator(kLink), nullptr);
}

TEST_F(ConfigServiceTest, PlainWriteDoesNotCreateAnInstance) {
  EXPECT_EQ(config_.setValue("Link.a.Up", "true", 0), C_RESULT_NOT_FOUND);
  EXPECT_EQ(config_.instanceIterator(kLink), nullptr);
}

TEST_F(ConfigServiceTest, CreatingWriteAddsTheInstance) {
  config_.registObserver(kLink, &observer_);
  EXPECT_EQ(config_.setValue("Link.a.Up", "true", C_CFM_CREATE), C_RESULT_OK);
  EXPECT_EQ(observer_.calls, (Calls{"3 Link.a. 1 ", "3 Link.a. 2 Up"}));
  EXPECT_EQ(instancesOf(kLink), std::vector<std::string>{"Link.a."});
  EXPECT_EQ(valueOf("Link.a.Up"), "true");
}

TEST_F(ConfigServiceTest, CreatingWriteOfTheDefaultOnlyAddsTheInstance) {
  config_.registObserver(kLink, &observer_);
  EXPECT_EQ(config_.setValue("Link.a.Up", "false", C_CFM_CREATE), C_RESULT_OK);
  EXPECT_EQ(observer_.calls, Calls{"3 Link.a. 1 "});
}

TEST_F(ConfigServiceTest, CreatingWriteToAnExistingInstanceIsAPlainWrite) {
  config_.addInstance("Link.a.");
  config_.registObserver(kLink, &observer_);
  EXPECT_EQ(config_.setValue("Link.a.Up", "true", C_CFM_CREATE), C_RESULT_OK);
  EXPECT_EQ(observer_.calls, Calls{"3 Link.a. 2 Up"});
}

TEST_F(ConfigServiceTest, InvalidValueCreatesNoInstance) {
  EXPECT_EQ(config_.setValue("Link.a.Up", "maybe", C_CFM_CREATE), C_RESULT_PARAM);
  EXPECT_EQ(config_.instanceIterator(kLink), nullptr);
}

TEST_F(ConfigServiceTest, ObserverMayDeleteTheNewInstance) {
  observer_.then = [&] { config_.deleteInstance("Link.a."); };
  config_.registObserver(kLink, &observer_);
  EXPECT_EQ(config_.setValue("Link.a.Up", "true", C_CFM_CREATE), C_RESULT_NOT_FOUND);
  EXPECT_EQ(observer_.calls, (Calls{"3 Link.a. 1 ", "3 Link.a. 3 "}));
}

TEST_F(ConfigServiceTest, InstanceMayNotHaveTheNameOfAnObject) {
  EXPECT_EQ(config_.setValue("Link.All.Up", "true", C_CFM_CREATE), C_RESULT_NOT_FOUND);
  EXPECT_EQ(config_.addInstance("Link.All."), C_RESULT_REDUNDANT);
}

TEST_F(ConfigServiceTest, DeletingWriteRemovesTheInstance) {
  config_.setValue("Link.a.Up", "true", C_CFM_CREATE);
  config_.registObserver(kLink, &observer_);
  EXPECT_EQ(config_.setValue("Link.a.Up", "not looked at", C_CFM_DELETE), C_RESULT_OK);
  EXPECT_EQ(observer_.calls, Calls{"3 Link.a. 3 "});
  EXPECT_EQ(config_.instanceIterator(kLink), nullptr);
}

TEST_F(ConfigServiceTest, ReaddedInstanceHasItsDefaults) {
  config_.setValue("Link.a.Up", "true", C_CFM_CREATE);
  config_.deleteInstance("Link.a.");
  config_.addInstance("Link.a.");
  EXPECT_EQ(valueOf("Link.a.Up"), "false");
}

TEST_F(ConfigServiceTest, DeletionOfAMissingInstanceIsRefused) {
  EXPECT_EQ(config_.setValue("Link.a.Up", "", C_CFM_DELETE), C_RESULT_NOT_FOUND);
  EXPECT_EQ(config_.deleteInstance("Nothing."), C_RESULT_NOT_FOUND);
}

TEST_F(ConfigServiceTest, DeletionFromAnObjectThatIsNotDynamicIsRefused) {
  EXPECT_EQ(config_.setValue("Port.a.Mtu", "", C_CFM_DELETE), C_RESULT_PARAM);
  EXPECT_EQ(config_.setValue("Time.Server", "", C_CFM_DELETE), C_RESULT_PARAM);
  EXPECT_EQ(valueOf("Port.a.Mtu"), "9000");
}

TEST_F(ConfigServiceTest, InstanceIsAddedOnceToADynamicObject) {
  EXPECT_EQ(config_.addInstance("Link.a."), C_RESULT_OK);
  EXPECT_EQ(config_.addInstance("Link.a."), C_RESULT_REDUNDANT);
  EXPECT_EQ(config_.addInstance("Port.c."), C_RESULT_NOT_FOUND);
}

TEST_F(ConfigServiceTest, NodeOutlivesItsInstance) {
  config_.setValue("Link.a.Up", "true", C_CFM_CREATE);
  ICfmNode* node = config_.getNode("Link.a.Up");
  config_.deleteInstance("Link.a.");
  EXPECT_EQ(node->getValue(), "false");
  EXPECT_EQ(config_.releaseNode(node), C_RESULT_OK);
}

TEST_F(ConfigServiceTest, ComputedLeafIsReadFromItsProvider) {
  Provider provider("2024-02-29T12:00:00");
  EXPECT_EQ(config_.registDataProvider(kTime, &provider), C_RESULT_OK);
  EXPECT_EQ(valueOf("Time.Now"), "2024-02-29T12:00:00");
  EXPECT_EQ(provider.calls, std::vector<std::string>{"1 Time. Now"});
}

TEST_F(ConfigServiceTest, ProviderIsCalledForEveryRead) {
  Provider provider("");
  config_.registDataProvider(kTime, &provider);
  valueOf("Time.Now");
  valueOf("Time.Now");
  EXPECT_EQ(provider.calls.size(), 2U);
}

TEST_F(ConfigServiceTest, ProviderIsCalledOnceForANode) {
  Provider provider("abc");
  config_.registDataProvider(kTime, &provider);
  ICfmNode* node = config_.getNode("Time.Now");
  EXPECT_EQ(node->getLength(), 3U);
  EXPECT_EQ(node->getValue(), "abc");
  config_.releaseNode(node);
  EXPECT_EQ(provider.calls.size(), 1U);
}

TEST_F(ConfigServiceTest, ProviderIsNotCalledForTheType) {
  Provider provider("abc");
  config_.registDataProvider(kTime, &provider);
  ICfmNode* node = config_.getNode("Time.Now");
  EXPECT_EQ(node->getType(), "datetime");
  config_.releaseNode(node);
  EXPECT_TRUE(provider.calls.empty());
}

TEST_F(ConfigServiceTest, ProviderIsNotCalledForStoredLeaves) {
  Provider provider("abc");
  config_.registDataProvider(kTime, &provider);
  EXPECT_EQ(valueOf("Time.Server"), "pool");
}

TEST_F(ConfigServiceTest, ProviderIsNotCalledForAMissingInstance) {
  Provider provider("abc");
  config_.registDataProvider(kLink, &provider);
  EXPECT_EQ(valueOf("Link.a.Speed"), "10");
  EXPECT_TRUE(provider.calls.empty());
}

TEST_F(ConfigServiceTest, ComputedLeafWithoutProviderHasItsDefault) {
  EXPECT_EQ(valueOf("Time.Now"), "2000-01-01T00:00:00");
}

TEST_F(ConfigServiceTest, LaterProviderReplacesTheEarlierOne) {
  Provider earlier("earlier");
  Provider later("later");
  config_.registDataProvider(kTime, &earlier);
  config_.registDataProvider(kTime, &later);
  EXPECT_EQ(valueOf("Time.Now"), "later");
}

TEST_F(ConfigServiceTest, ProviderOfAnUnknownObjectIsRefused) {
  Provider provider("");
  EXPECT_EQ(config_.registDataProvider(kUnknown, &provider), C_RESULT_NOT_FOUND);
}

TEST_F(ConfigServiceTest, WriteToAComputedLeafIsRefused) {
  EXPECT_EQ(config_.setValue("Time.Now", "2024-02-29T12:00:00", 0), C_RESULT_PARAM);
  EXPECT_EQ(config_.setValue("Link.a.Speed", "1", C_CFM_CREATE), C_RESULT_PARAM);
  EXPECT_EQ(config_.instanceIterator(kLink), nullptr);
}

TEST_F(ConfigServiceTest, AttributeIsStored) {
  std::int32_t attribute = 0;
  EXPECT_EQ(config_.getAttr(kTime, &attribute), C_RESULT_OK);
  EXPECT_EQ(attribute, 7);
  EXPECT_EQ(config_.setAttr(kTime, -1), C_RESULT_OK);
  EXPECT_EQ(config_.getAttr(kTime, &attribute), C_RESULT_OK);
  EXPECT_EQ(attribute, -1);
}

TEST_F(ConfigServiceTest, AttributeMayBeReadToAnUnalignedAddress) {
  struct {
    char first;
    char word[4];
    char last;
  } __attribute__((packed)) odd = {'a', {}, 'z'};
  EXPECT_EQ(config_.getAttr(kTime, odd.word), C_RESULT_OK);
  EXPECT_EQ(odd.first, 'a');
  EXPECT_EQ(odd.last, 'z');
}

TEST_F(ConfigServiceTest, AttributeOfAnUnknownObjectIsRefused) {
  std::int32_t attribute = 5;
  EXPECT_EQ(config_.getAttr(kUnknown, &attribute), C_RESULT_NOT_FOUND);
  EXPECT_EQ(attribute, 5);
  EXPECT_EQ(config_.setAttr(kUnknown, 1), C_RESULT_NOT_FOUND);
  EXPECT_EQ(config_.getAttr(kTime, nullptr), C_RESULT_PARAM);
}

TEST_F(ConfigServiceTest, ReservedOperationsReturnZero) {
  ICfm& cfm = config_;
  for (auto reserved : {&ICfm::reserved4, &ICfm::reserved6, &ICfm::reserved11, &ICfm::reserved12,
                        &ICfm::reserved13, &ICfm::reserved16}) {
    EXPECT_EQ((cfm.*reserved)(), 0);
  }
  ICfmNode* node = config_.getNode("Time.Server");
  EXPECT_EQ(node->reserved5(), 0);
  config_.releaseNode(node);
  ICfmIterator* iterator = config_.instanceIterator(kTime);
  EXPECT_EQ(iterator->reserved4(), 0);
  EXPECT_EQ(iterator->reserved5(), 0);
  config_.releaseIterator(iterator);
}

// A store that counts the saves of changes and returns a given result.
class ConfigSaveTest : public testing::Test {
 protected:
  int calls_ = 0;
  int saves_ = 0;
  int result_ = C_RESULT_OK;
  Services services_;
  ConfigService config_{Tree(parseConfiguration(kTree, "test").objects), services_.registry,
                        [this](Tree&, const Changes& changes) {
                          calls_++;
                          if (!changes.empty()) saves_++;
                          return result_;
                        }};
};

TEST_F(ConfigSaveTest, ChangesAreSavedOnce) {
  config_.setValue("Time.Server", "other", 0);
  EXPECT_EQ(config_.save(1), C_RESULT_OK);
  EXPECT_EQ(saves_, 1);
  EXPECT_EQ(config_.save(1), C_RESULT_OK);
  EXPECT_EQ(saves_, 1);
}

TEST_F(ConfigSaveTest, NothingIsSavedWithoutChanges) {
  EXPECT_EQ(config_.save(1), C_RESULT_OK);
  EXPECT_EQ(saves_, 0);
}

// The store notices then that its file was removed.
TEST_F(ConfigSaveTest, StoreIsCalledEvenWithoutChanges) {
  result_ = C_RESULT_SYSTEM_CALL;
  EXPECT_EQ(config_.save(1), C_RESULT_SYSTEM_CALL);
  EXPECT_EQ(calls_, 1);
}

TEST_F(ConfigSaveTest, UnknownScopeIsRefused) {
  config_.setValue("Time.Server", "other", 0);
  for (const int scope : {0, 2, -1}) EXPECT_EQ(config_.save(scope), C_RESULT_PARAM) << scope;
  EXPECT_EQ(saves_, 0);
}

TEST_F(ConfigSaveTest, UnknownScopeIsRefusedWithoutChanges) {
  for (const int scope : {0, 2, -1}) EXPECT_EQ(config_.save(scope), C_RESULT_PARAM) << scope;
}

TEST_F(ConfigSaveTest, RefusedScopeLeavesTheChangesForTheNextSave) {
  config_.setValue("Time.Server", "other", 0);
  config_.save(0);
  EXPECT_EQ(config_.save(1), C_RESULT_OK);
  EXPECT_EQ(saves_, 1);
}

TEST_F(ConfigSaveTest, FailedSaveIsRepeatedByTheNext) {
  config_.setValue("Time.Server", "other", 0);
  result_ = C_RESULT_SYSTEM_CALL;
  EXPECT_EQ(config_.save(1), C_RESULT_SYSTEM_CALL);
  result_ = C_RESULT_OK;
  EXPECT_EQ(config_.save(1), C_RESULT_OK);
  EXPECT_EQ(saves_, 2);
}

}  // namespace

}  // namespace host
