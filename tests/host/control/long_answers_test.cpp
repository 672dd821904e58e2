// SPDX-License-Identifier: MIT
// Answers that are sent in pieces.
#include <malloc.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "binding/handlers.h"
#include "host/control/leaf_names.h"
#include "tests/host/control/control_fixture.h"
#include "tests/host/support/objects.h"
#include "tests/host/support/open_descriptors.h"

namespace host {

using nlohmann::json;

namespace {

constexpr int kInstances = 20000;

std::string nameOf(int instance) {
  return "Device.Interfaces." + std::to_string(instance) + '.';
}

std::size_t usedMemory() {
  const auto heap = mallinfo2();
  return heap.uordblks + heap.hblkhd;
}

class LongAnswersTest : public ControlFixture {
 protected:
  using ControlFixture::ControlFixture;

  void addInstances(int count) {
    for (int i = 0; i < count; i++) config_.addInstance(nameOf(i));
  }

  Client ask(const std::string& target) {
    Client client = connect();
    client->request("GET", target);
    client->write();
    return client;
  }

  std::string wholeAnswer(HttpClient& client) { return answerTo(client).substr(4); }

  // The whole answer of /tree at once.
  std::string tree() {
    std::map<std::string, json> leaves;
    for (const auto& [number, object] : config_.tree().objects()) {
      for (const auto& [name, instance] : object.instances) {
        for (const Leaf& leaf : object.leaves) {
          const std::string fullname = name + leaf.name;
          leaves[fullname] = {{"name", fullname},
                              {"type", leaf.type->name},
                              {"value", leaf.type->secret ? json() : json(value(fullname))},
                              {"computed", leaf.computed}};
        }
      }
    }
    json list = json::array();
    for (const auto& [name, leaf] : leaves) list.push_back(leaf);
    return json{{"leaves", list}}.dump();
  }
};

TEST_F(LongAnswersTest, LongTreeIsTheSameDocument) {
  addInstances(kInstances);
  const Client client = ask("/tree");
  EXPECT_TRUE(wholeAnswer(*client) == tree());
}

TEST_F(LongAnswersTest, LargeTreeNeedsLittleMemoryWhileOthersAreAnswered) {
  addInstances(200000);
  const Client client = ask("/tree");
  const std::size_t before = usedMemory();
  std::size_t most = before;
  for (int i = 0; i < 50; i++) {
    expectOthersAreAnswered();
    most = std::max(most, usedMemory());
  }
  EXPECT_LT(most - before, 2u << 20);
}

TEST_F(LongAnswersTest, InstanceThatIsDeletedBeforeItsPieceIsSkipped) {
  addInstances(kInstances);
  const Client client = ask("/tree");
  for (int i = 0; i < 10; i++) expectOthersAreAnswered();
  for (int i = 9000; i < 10000; i++) config_.deleteInstance(nameOf(i));
  const std::string text = wholeAnswer(*client);
  EXPECT_EQ(text.find(nameOf(9500)), std::string::npos);
  EXPECT_TRUE(text == tree());
}

TEST_F(LongAnswersTest, ClientMayLeaveInTheMiddleOfATree) {
  addInstances(kInstances);
  Client client = ask("/tree");
  for (int i = 0; i < 3; i++) expectOthersAreAnswered();
  client.reset();
  until([this] { return get("/statistics").find("\"clients\":1,") != std::string::npos; }, "one client");
}

Connections::Limits shortLimits() {
  Connections::Limits limits;
  limits.request_time = std::chrono::milliseconds(200);
  limits.check_every = std::chrono::milliseconds(10);
  return limits;
}

class ShortTimeTest : public LongAnswersTest {
 protected:
  ShortTimeTest() : LongAnswersTest(shortLimits()) {}
};

TEST_F(ShortTimeTest, ClientThatStopsReadingIsCutOff) {
  addInstances(kInstances);
  const std::size_t descriptors = openDescriptors();
  const Client client = ask("/tree");
  expectOthersAreAnswered();
  until([&] { return openDescriptors() == descriptors + 1; }, "the end of the connection");
}

TEST_F(LongAnswersTest, ManyInstancesAreOneDocument) {
  addInstances(kInstances);
  json names = json::array();
  for (const auto& [name, values] : config_.tree().objects().at(2).instances) names.push_back(name);
  const Client client = ask("/instances?object=2");
  EXPECT_TRUE(wholeAnswer(*client) == json({{"instances", names}}).dump());
  const Client other = ask("/objects");
  const std::string text = wholeAnswer(*other);
  EXPECT_TRUE(text == json::parse(text).dump());
  EXPECT_TRUE(json::parse(text)["objects"][1]["instances"] == names);
}

TEST_F(LongAnswersTest, LongTraceIsOneDocument) {
  class Observer final : public IEventObserver {
    int update(std::string, std::string, std::string) override { return 7; }
  } observer;
  events_.registObserver("link-up", &observer);
  for (int i = 0; i < 10001; i++) events_.notify("link-up", "", 0);
  const Client client = ask("/trace");
  const std::string text = wholeAnswer(*client);
  const json trace = json::parse(text);
  EXPECT_TRUE(text == trace.dump());
  EXPECT_EQ(trace["traceEvents"].size(), 10001u);
  EXPECT_EQ(trace["traceEvents"][0]["name"], "process_name");
  EXPECT_EQ(trace["traceEvents"][10000]["args"], (json{{"key", "link-up"}, {"result", 7}}));
}

TEST_F(LongAnswersTest, ManyRegistrationsAreOneDocument) {
  class Observer final : public IEventObserver {
    int update(std::string, std::string, std::string) override { return 7; }
  };
  std::vector<Observer> observers(2000);
  for (Observer& observer : observers) events_.registObserver("link-up", &observer);
  const Client client = ask("/registrations");
  const std::string text = wholeAnswer(*client);
  const json registrations = json::parse(text);
  EXPECT_TRUE(text == registrations.dump());
  EXPECT_EQ(registrations["registrations"].size(), observers.size());
}

// "NAME NUMBER" of each.
std::vector<std::string> namesIn(const Tree& tree, const std::string& prefix) {
  std::vector<std::string> texts;
  LeafNames names(tree, prefix);
  while (const auto name = names.next()) {
    texts.push_back(name->first + ' ' + std::to_string(name->second->number));
  }
  return texts;
}

Object objectWith(int number, const std::string& name, const std::vector<std::string>& instances,
                  const std::vector<std::string>& leaves) {
  std::vector<Leaf> declared;
  for (const std::string& leaf : leaves) declared.push_back({leaf, findValueType("str"), ""});
  return objectOf(number, name, std::move(declared), instances);
}

TEST(LeafNamesTest, NamesOfAllObjectsAreInOneOrder) {
  const Tree tree(objectsOf(objectWith(1, "A.", {"A."}, {"A", "a", "z"}),
                            objectWith(2, "A.b.", {"A.b."}, {"x", "y"}),
                            objectWith(3, "A.c.", {"A.c.1.", "A.c.1-.", "A.c.2."}, {"x", "y"}),
                            objectWith(4, "B.", {"B."}, {}), objectWith(5, "0.", {}, {"x"})));
  const std::vector<std::string> all{"A.A 1",      "A.a 1",      "A.b.x 2",   "A.b.y 2",
                                     "A.c.1-.x 3", "A.c.1-.y 3", "A.c.1.x 3", "A.c.1.y 3",
                                     "A.c.2.x 3",  "A.c.2.y 3",  "A.z 1"};
  EXPECT_EQ(namesIn(tree, ""), all);
  EXPECT_EQ(namesIn(tree, "A."), all);
  EXPECT_EQ(namesIn(tree, "A.c.1"), std::vector<std::string>(all.begin() + 4, all.begin() + 8));
  EXPECT_EQ(namesIn(tree, "A.b.x"), std::vector<std::string>{"A.b.x 2"});
  EXPECT_EQ(namesIn(tree, "A.b.xx"), std::vector<std::string>());
  EXPECT_EQ(namesIn(tree, "C"), std::vector<std::string>());
}

TEST(LeafNamesTest, ManyNamesOfSeveralObjectsAreInOneOrder) {
  std::vector<Object> objects;
  std::vector<std::string> expected;
  for (int number = 0; number < 5; number++) {
    std::vector<std::string> leaves;
    for (int i = 0; i < 999; i++) leaves.push_back(std::to_string(i * 7919 % 5000));
    const std::string name = std::string(static_cast<std::size_t>(number + 1), '1') + '.';
    objects.push_back(objectWith(number, "O." + name, {"O." + name + "1.", "O." + name + "2."}, leaves));
    for (const auto& [name_of_instance, instance] : objects.back().instances) {
      for (const Leaf& leaf : objects.back().leaves) {
        expected.push_back(name_of_instance + leaf.name + ' ' + std::to_string(number));
      }
    }
  }
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(namesIn(Tree(std::move(objects)), ""), expected);
}

}  // namespace

}  // namespace host
