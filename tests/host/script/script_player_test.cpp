// SPDX-License-Identifier: MIT
#include "host/script/script_player.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "binding/handlers.h"
#include "host/config/config_service.h"
#include "host/event/event_service.h"
#include "host/start/configuration_file.h"
#include "include_c"
#include "tests/host/support/running_loop.h"

namespace host {
namespace {

using std::chrono::milliseconds;
using Records = std::vector<std::string>;

constexpr int kMade = 17;  // what a call answers that is made

const char kTree[] = R"({"objects": [{"number": 1, "name": "A.", "leaves": {
  "X": {"type": "int"}, "Y": {"type": "int"}, "Secret": {"type": "pwd"}}}]})";

class EventObserver final : public IEventObserver {
 public:
  explicit EventObserver(std::function<void(const std::string&)> call) : call_(std::move(call)) {}

  int update(std::string event, std::string data, std::string source) override {
    call_(event + ' ' + data + ' ' + source);
    return 0;
  }

 private:
  std::function<void(const std::string&)> call_;
};

class RefusingEvents final : public IEvent {
 public:
  int registObserver(std::string, IEventObserver*) override { return C_RESULT_PARAM; }
  int unregistObserver(std::string, IEventObserver*) override { return C_RESULT_PARAM; }
  int notify(std::string, std::string, int) override { return C_RESULT_PARAM; }
};

// A script that is played on a virtual clock.
class ScriptPlayerTest : public LoopFixture {
 protected:
  void play(const std::string& steps) { play(steps, events_); }

  void play(const std::string& steps, IEvent& events) {
    player_ = std::make_unique<ScriptPlayer>(
        parseScript(R"({"steps": [)" + steps + "]}", "script.json"), guard_,
        ScriptPlayer::Services{clock_, deadlines_, log_, config_, events, [this] { loop_.stop(); }});
  }

  // Runs the loop until so much time has passed, and everything has been done that was due by then.
  void runFor(int ms) {
    const Deadlines::Deadline end = deadlines_.in(milliseconds(ms));
    deadlines_.add(end, [this] { loop_.stop(); });
    loop_.run();
    EXPECT_EQ(clock_.now(), end.first);
  }

  long elapsed() const {
    return static_cast<long>(std::chrono::duration_cast<milliseconds>(clock_.now() - start_).count());
  }

  int call(Operation operation) {
    return guard_.enter(operation, [] { return kMade; });
  }

  std::vector<int> call(Operation operation, int times) {
    std::vector<int> answers;
    for (int i = 0; i < times; i++) answers.push_back(call(operation));
    return answers;
  }

  std::string value(const std::string& fullname) {
    ICfmNode* node = config_.getNode(fullname);
    const std::string text = node != nullptr ? node->getValue() : "none";
    config_.releaseNode(node);
    return text;
  }

  Clock clock_{Clock::Kind::kVirtual};
  const Clock::TimePoint start_ = clock_.now();
  Deadlines deadlines_{base_, clock_};
  ConfigService config_{Tree(parseConfiguration(kTree, "config.json").objects), registry_};
  EventService events_{"service", registry_};
  Guard guard_;
  std::unique_ptr<ScriptPlayer> player_;
};

TEST_F(ScriptPlayerTest, WithoutStepsCallsAreJustMade) {
  play("");
  EXPECT_EQ(call(Operation::kSave), kMade);
  EXPECT_EQ(log_.records, Records());
}

TEST_F(ScriptPlayerTest, ValuesAreSetAtTheirTime) {
  play(R"({"atMs": 5000, "set": {"A.X": 1, "A.Y": 2}})");
  runFor(4999);
  EXPECT_EQ(value("A.X"), "0");
  runFor(1);
  EXPECT_EQ(value("A.X"), "1");
  EXPECT_EQ(value("A.Y"), "2");
  EXPECT_EQ(log_.records, (Records{"6 script: sets A.X", "6 script: sets A.Y"}));
}

TEST_F(ScriptPlayerTest, ValueThatCannotBeSetIsAWarning) {
  play(R"({"atMs": 1, "set": {"A.None": 1, "A.X": "text"}})");
  runFor(1);
  EXPECT_EQ(log_.records, (Records{"6 script: sets A.None", "4 script: cannot set A.None: result -1019",
                                   "6 script: sets A.X", "4 script: cannot set A.X: result -1023"}));
}

TEST_F(ScriptPlayerTest, SecretValueIsSetAndNotTold) {
  play(R"({"atMs": 1, "set": {"A.Secret": "sesame"}})");
  runFor(1);
  EXPECT_EQ(value("A.Secret"), "sesame");
  EXPECT_EQ(log_.records, Records{"6 script: sets A.Secret"});
}

TEST_F(ScriptPlayerTest, EventReachesItsObserversAtItsTime) {
  std::vector<std::pair<std::string, long>> told;
  EventObserver observer([&](const std::string& text) { told.emplace_back(text, elapsed()); });
  events_.registObserver("link-up", &observer);
  play(R"({"atMs": 6000, "event": "link-up", "data": "eth0"})");
  runFor(10000);
  EXPECT_EQ(told, (std::vector<std::pair<std::string, long>>{{"link-up eth0 service", 6000}}));
  EXPECT_EQ(log_.records, Records{"6 script: sends event link-up"});
}

TEST_F(ScriptPlayerTest, EventThatCannotBeSentIsAWarning) {
  RefusingEvents refusing;
  play(R"({"atMs": 1, "event": "link-up"})", refusing);
  runFor(1);
  EXPECT_EQ(log_.records,
            (Records{"6 script: sends event link-up", "4 script: cannot send event link-up: result -1023"}));
}

TEST_F(ScriptPlayerTest, StepsAtOneTimeAreDoneInTheirOrder) {
  play(R"({"atMs": 1, "set": {"A.X": 2}}, {"atMs": 1, "set": {"A.X": 1}})");
  runFor(1);
  EXPECT_EQ(value("A.X"), "1");
}

TEST_F(ScriptPlayerTest, AnswerIsGivenAtItsCallOnly) {
  play(R"({"call": "setValue", "nth": 2, "answer": -1018})");
  EXPECT_EQ(call(Operation::kSetValue, 3), (std::vector<int>{kMade, -1018, kMade}));
  EXPECT_EQ(log_.records, Records{"6 script: setValue, call 2: answers -1018"});
}

TEST_F(ScriptPlayerTest, AnswerIsGivenAsManyTimesAsAskedFor) {
  play(R"({"call": "save", "nth": 2, "times": 2, "answer": 0})");
  EXPECT_EQ(call(Operation::kSave, 4), (std::vector<int>{kMade, 0, 0, kMade}));
  EXPECT_EQ(log_.records,
            (Records{"6 script: save, call 2: answers 0", "6 script: save, call 3: answers 0"}));
}

TEST_F(ScriptPlayerTest, EachOperationIsCountedForItself) {
  play(R"({"call": "registObserver", "nth": 2, "answer": -1})");
  call(Operation::kSave);
  call(Operation::kRegistEventObserver);
  EXPECT_EQ(call(Operation::kRegistObserver, 2), (std::vector<int>{kMade, -1}));
}

TEST_F(ScriptPlayerTest, ObjectIsAnsweredAsNull) {
  int object = 0;
  play(R"({"call": "getNode", "nth": 1, "answer": null})");
  const auto get = [&] { return guard_.enter(Operation::kGetNode, [&] { return &object; }); };
  EXPECT_EQ(get(), nullptr);
  EXPECT_EQ(get(), &object);
  EXPECT_EQ(log_.records, Records{"6 script: getNode, call 1: answers null"});
}

TEST_F(ScriptPlayerTest, FirstAnswerForACallDecides) {
  play(R"({"call": "save", "nth": 1, "times": 9, "answer": -1}, {"call": "save", "nth": 1, "answer": -2})");
  EXPECT_EQ(call(Operation::kSave), -1);
}

TEST_F(ScriptPlayerTest, ValueIsSetBeforeTheCallThatIsNamed) {
  play(R"({"call": "getNode", "nth": 2, "set": {"A.X": 5}})");
  std::vector<std::string> values;
  for (int i = 0; i < 3; i++) {
    guard_.enter(Operation::kGetNode, [&] {
      values.push_back(value("A.X"));
      return kMade;
    });
  }
  EXPECT_EQ(values, (std::vector<std::string>{"0", "5", "5"}));
}

TEST_F(ScriptPlayerTest, UnavailableContextAnswersNothingForItsTime) {
  play(R"({"atMs": 100, "unavailable": {"forMs": 50}})");
  runFor(100);
  EXPECT_EQ(call(Operation::kSave), C_RESULT_NOT_INIT);
  runFor(49);
  EXPECT_EQ(call(Operation::kSave), C_RESULT_NOT_INIT);
  runFor(1);
  EXPECT_EQ(call(Operation::kSave), kMade);
  EXPECT_EQ(
      log_.records,
      (Records{"6 script: the context is unavailable for 50 ms", "6 script: save, call 1: answers -1022",
               "6 script: save, call 2: answers -1022", "6 script: the context is available again"}));
}

TEST_F(ScriptPlayerTest, UnavailableContextGivesNoServices) {
  int service = 0;
  play(R"({"call": "getCfm", "nth": 1, "unavailable": {"forMs": 1}})");
  EXPECT_EQ(guard_.enter(Operation::kGetCfm, [&] { return &service; }), nullptr);
  EXPECT_EQ(guard_.enter(Operation::kGetLoop, [&] { return &service; }), nullptr);
  runFor(1);
  EXPECT_EQ(guard_.enter(Operation::kGetLoop, [&] { return &service; }), &service);
}

TEST_F(ScriptPlayerTest, TimesOfUnavailabilityThatOverlapAreOne) {
  play(R"({"atMs": 10, "unavailable": {"forMs": 50}}, {"atMs": 20, "unavailable": {"forMs": 10}})");
  runFor(40);
  EXPECT_EQ(call(Operation::kSave), C_RESULT_NOT_INIT);
  runFor(20);
  EXPECT_EQ(call(Operation::kSave), kMade);
  EXPECT_EQ(log_.records.back(), "6 script: the context is available again");
  EXPECT_EQ(log_.records.size(), 4U);
}

TEST_F(ScriptPlayerTest, CallThatBeginsUnavailabilityIsTheFirstOfItsCalls) {
  play(R"({"call": "getCfm", "nth": 2, "unavailable": {"calls": 3}})");
  EXPECT_EQ(call(Operation::kSave, 2), (std::vector<int>{kMade, kMade}));
  EXPECT_EQ(call(Operation::kLoad), kMade);
  int service = 0;
  const auto get = [&] { return guard_.enter(Operation::kGetCfm, [&] { return &service; }); };
  EXPECT_NE(get(), nullptr);
  EXPECT_EQ(get(), nullptr);
  EXPECT_EQ(call(Operation::kSave), C_RESULT_NOT_INIT);
  EXPECT_EQ(get(), nullptr);
  EXPECT_NE(get(), nullptr);
  EXPECT_EQ(
      log_.records,
      (Records{"6 script: the context is unavailable for 3 calls", "6 script: getCfm, call 2: answers null",
               "6 script: save, call 3: answers -1022", "6 script: getCfm, call 3: answers null"}));
}

TEST_F(ScriptPlayerTest, UnavailabilityGoesBeforeAnAnswer) {
  play(R"({"call": "save", "nth": 1, "answer": 5}, {"call": "save", "nth": 1, "unavailable": {"calls": 1}})");
  EXPECT_EQ(call(Operation::kSave), C_RESULT_NOT_INIT);
}

TEST_F(ScriptPlayerTest, LoopIsStoppedAtItsTime) {
  play(R"({"atMs": 86400000, "stop": true})");
  EXPECT_EQ(loop_.run(), C_RESULT_OK);
  EXPECT_EQ(elapsed(), 86400000);
  EXPECT_EQ(log_.records, Records{"6 script: stops the loop"});
}

TEST_F(ScriptPlayerTest, WhatIsDueWithTheStopIsDone) {
  play(R"({"atMs": 1, "stop": true}, {"atMs": 1, "set": {"A.X": 5}})");
  loop_.run();
  EXPECT_EQ(value("A.X"), "5");
}

TEST_F(ScriptPlayerTest, LoopThatIsNotRunningYetIsStoppedAsSoonAsItRuns) {
  play(R"({"call": "load", "nth": 1, "stop": true})");
  EXPECT_EQ(call(Operation::kLoad), kMade);
  EXPECT_EQ(loop_.run(), C_RESULT_OK);
  EXPECT_EQ(elapsed(), 0);
}

}  // namespace

}  // namespace host
