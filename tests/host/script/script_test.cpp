// SPDX-License-Identifier: MIT
#include "host/script/script.h"

#include <chrono>
#include <string>
#include <variant>

#include <gtest/gtest.h>

#include "tests/host/support/documented_example.h"
#include "tests/host/support/error_text.h"
#include "tests/support/temporary_folder.h"

namespace host {
namespace {

using std::chrono::milliseconds;

std::string steps(const std::string& list) {
  return R"({"steps": [)" + list + "]}";
}

Step readOne(const std::string& step) {
  return parseScript(steps(step), "script.json").at(0);
}

std::string mistakeIn(const std::string& text) {
  return errorOf([&] { parseScript(text, "script.json"); });
}

std::string mistakeInStep(const std::string& step) {
  return mistakeIn(steps(step));
}

std::string refusal(const std::string& text) {
  return "-1023 script.json" + text;
}

TEST(ScriptTest, ListWithoutStepsIsAScript) {
  EXPECT_TRUE(parseScript(steps(""), "script.json").empty());
}

TEST(ScriptTest, StepsKeepTheirOrder) {
  const Script script = parseScript(steps(R"({"atMs": 2, "stop": true}, {"atMs": 1, "stop": true})"), "s");
  ASSERT_EQ(script.size(), 2U);
  EXPECT_EQ(std::get<AtTime>(script[0].when).time, milliseconds(2));
  EXPECT_EQ(std::get<AtTime>(script[1].when).time, milliseconds(1));
}

TEST(ScriptTest, TimeIsTaken) {
  EXPECT_EQ(std::get<AtTime>(readOne(R"({"atMs": 0, "stop": true})").when).time, milliseconds(0));
  EXPECT_EQ(std::get<AtTime>(readOne(R"({"atMs": 2147483647, "stop": true})").when).time,
            milliseconds(2147483647));
}

TEST(ScriptTest, CallIsTaken) {
  const auto when = std::get<AtCall>(readOne(R"({"call": "save", "nth": 3, "times": 5, "answer": 0})").when);
  EXPECT_EQ(when.operation, Operation::kSave);
  EXPECT_EQ(when.first, 3);
  EXPECT_EQ(when.times, 5);
}

TEST(ScriptTest, CallIsOneUnlessMoreAreAskedFor) {
  EXPECT_EQ(std::get<AtCall>(readOne(R"({"call": "save", "nth": 3, "answer": 0})").when).times, 1);
}

TEST(ScriptTest, ValuesAreTakenAsTheConfigurationHasThem) {
  const Step step = readOne(R"({"atMs": 1, "set": {"A.X": "text", "A.Y": -5, "A.Z": true}})");
  EXPECT_EQ(std::get<SetValues>(step.action).values,
            (std::map<std::string, std::string>{{"A.X", "text"}, {"A.Y", "-5"}, {"A.Z", "true"}}));
}

TEST(ScriptTest, EventIsTaken) {
  const auto event = std::get<SendEvent>(readOne(R"({"atMs": 1, "event": "up", "data": "eth0"})").action);
  EXPECT_EQ(event.name, "up");
  EXPECT_EQ(event.data, "eth0");
}

TEST(ScriptTest, EventNeedsNoData) {
  EXPECT_EQ(std::get<SendEvent>(readOne(R"({"atMs": 1, "event": "up"})").action).data, "");
}

TEST(ScriptTest, AnswerIsACodeOrNull) {
  EXPECT_EQ(std::get<Answer>(readOne(R"({"call": "setValue", "nth": 1, "answer": -1018})").action).code,
            -1018);
  const Step step = readOne(R"({"call": "getNode", "nth": 1, "answer": null})");
  EXPECT_TRUE(std::holds_alternative<Answer>(step.action));
}

TEST(ScriptTest, UnavailabilityIsTaken) {
  const Step timed = readOne(R"({"atMs": 1, "unavailable": {"forMs": 50}})");
  EXPECT_EQ(std::get<UnavailableFor>(timed.action).duration, milliseconds(50));
  const Step counted = readOne(R"({"call": "getCfm", "nth": 4, "unavailable": {"calls": 10}})");
  EXPECT_EQ(std::get<UnavailableCalls>(counted.action).number, 10);
}

TEST(ScriptTest, StopIsTaken) {
  EXPECT_TRUE(std::holds_alternative<StopLoop>(readOne(R"({"call": "run", "nth": 1, "stop": true})").action));
}

TEST(ScriptTest, TextThatIsNotJsonIsRefused) {
  EXPECT_EQ(mistakeIn("{\"steps\":\n  [,]}"), refusal(":2:4: not valid JSON"));
}

TEST(ScriptTest, DocumentMustBeAnObjectWithSteps) {
  EXPECT_EQ(mistakeIn("[]"), refusal(": must be an object"));
  EXPECT_EQ(mistakeIn("{}"), refusal(": \"steps\" is missing"));
  EXPECT_EQ(mistakeIn(R"({"steps": {}})"), refusal(": /steps: must be an array"));
  EXPECT_EQ(mistakeIn(R"({"steps": [], "colour": 1})"), refusal(": /colour: unknown key"));
}

TEST(ScriptTest, StepMustBeAnObjectOfKnownKeys) {
  EXPECT_EQ(mistakeInStep("1"), refusal(": /steps/0: must be an object"));
  EXPECT_EQ(mistakeInStep(R"({"atMs": 1, "stop": true}, {"colour": 1})"),
            refusal(": /steps/1/colour: unknown key"));
  EXPECT_EQ(mistakeInStep(R"({"atMs": 1, "atMs": 2})"), refusal(": /steps/0/atMs: duplicate key"));
}

TEST(ScriptTest, OlderNameOfTheTimeIsAccepted) {
  EXPECT_EQ(std::get<AtTime>(readOne(R"({"at": 7, "stop": true})").when).time, milliseconds(7));
}

TEST(ScriptTest, TimeUnderBothNamesIsRefused) {
  EXPECT_EQ(mistakeInStep(R"({"at": 7, "atMs": 7, "stop": true})"),
            refusal(": /steps/0/at: is the older name of \"atMs\"; use only one of them"));
}

TEST(ScriptTest, StepNeedsEitherATimeOrACall) {
  const std::string needs = refusal(": /steps/0: needs either \"atMs\" or \"call\"");
  EXPECT_EQ(mistakeInStep(R"({"stop": true})"), needs);
  EXPECT_EQ(mistakeInStep(R"({"atMs": 1, "call": "save", "nth": 1, "stop": true})"), needs);
}

TEST(ScriptTest, TimeMustBeANumberThatIsNotNegative) {
  EXPECT_EQ(mistakeInStep(R"({"atMs": "1", "stop": true})"),
            refusal(": /steps/0/atMs: must be a 32-bit integer"));
  EXPECT_EQ(mistakeInStep(R"({"atMs": 2147483648, "stop": true})"),
            refusal(": /steps/0/atMs: must be a 32-bit integer"));
  EXPECT_EQ(mistakeInStep(R"({"atMs": -1, "stop": true})"), refusal(": /steps/0/atMs: must be 0 or more"));
}

TEST(ScriptTest, CallMustNameAnOperation) {
  EXPECT_EQ(mistakeInStep(R"({"call": "sing", "nth": 1, "answer": 0})"),
            refusal(": /steps/0/call: unknown operation \"sing\""));
  EXPECT_EQ(mistakeInStep(R"({"call": "init", "nth": 1, "answer": 0})"),
            refusal(": /steps/0/call: unknown operation \"init\""));
  EXPECT_EQ(mistakeInStep(R"({"call": 5, "nth": 1, "answer": 0})"),
            refusal(": /steps/0/call: must be a string"));
}

TEST(ScriptTest, CallMustHaveItsNumber) {
  EXPECT_EQ(mistakeInStep(R"({"call": "save", "answer": 0})"), refusal(": /steps/0: \"nth\" is missing"));
  EXPECT_EQ(mistakeInStep(R"({"call": "save", "nth": 0, "answer": 0})"),
            refusal(": /steps/0/nth: must be 1 or more"));
  EXPECT_EQ(mistakeInStep(R"({"call": "save", "nth": 1, "times": 0, "answer": 0})"),
            refusal(": /steps/0/times: must be 1 or more"));
}

TEST(ScriptTest, WhatBelongsToACallIsRefusedAtATime) {
  EXPECT_EQ(mistakeInStep(R"({"atMs": 1, "nth": 1, "stop": true})"),
            refusal(": /steps/0/nth: is only for a step with \"call\""));
  EXPECT_EQ(mistakeInStep(R"({"atMs": 1, "times": 1, "stop": true})"),
            refusal(": /steps/0/times: is only for a step with \"call\""));
  EXPECT_EQ(mistakeInStep(R"({"atMs": 1, "answer": null})"),
            refusal(": /steps/0/answer: is only for a step with \"call\""));
}

TEST(ScriptTest, StepDoesOneThing) {
  EXPECT_EQ(mistakeInStep(R"({"atMs": 1})"),
            refusal(": /steps/0: needs one of \"set\", \"event\", \"answer\", \"unavailable\" and \"stop\""));
  EXPECT_EQ(mistakeInStep(R"({"atMs": 1, "event": "up", "stop": true})"),
            refusal(": /steps/0/stop: a step can have only one action"));
}

TEST(ScriptTest, DataBelongsToAnEvent) {
  EXPECT_EQ(mistakeInStep(R"({"atMs": 1, "stop": true, "data": "x"})"),
            refusal(": /steps/0/data: is only for a step with \"event\""));
  EXPECT_EQ(mistakeInStep(R"({"atMs": 1, "event": "up", "data": 1})"),
            refusal(": /steps/0/data: must be a string"));
}

TEST(ScriptTest, NullIsNoAnswerOfAnOperationThatAnswersACode) {
  EXPECT_EQ(mistakeInStep(R"({"call": "setValue", "nth": 1, "answer": null})"),
            refusal(": /steps/0/answer: setValue cannot answer null"));
}

TEST(ScriptTest, CodeIsNoAnswerOfAnOperationThatAnswersAnObject) {
  EXPECT_EQ(mistakeInStep(R"({"call": "getNode", "nth": 1, "answer": 0})"),
            refusal(": /steps/0/answer: getNode can only answer null"));
}

TEST(ScriptTest, CodeMustBeANumber) {
  EXPECT_EQ(mistakeInStep(R"({"call": "setValue", "nth": 1, "answer": "x"})"),
            refusal(": /steps/0/answer: must be a 32-bit integer"));
}

TEST(ScriptTest, ValuesMustBeValues) {
  EXPECT_EQ(mistakeInStep(R"({"atMs": 1, "set": ["A.X"]})"), refusal(": /steps/0/set: must be an object"));
  EXPECT_EQ(mistakeInStep(R"({"atMs": 1, "set": {"A.X": null}})"),
            refusal(": /steps/0/set/A.X: must be a string, an integer, true or false"));
}

TEST(ScriptTest, UnavailabilityMustHaveOneMeasure) {
  const std::string needs = refusal(": /steps/0/unavailable: needs either \"forMs\" or \"calls\"");
  EXPECT_EQ(mistakeInStep(R"({"atMs": 1, "unavailable": {}})"), needs);
  EXPECT_EQ(mistakeInStep(R"({"atMs": 1, "unavailable": {"forMs": 1, "calls": 1}})"), needs);
  EXPECT_EQ(mistakeInStep(R"({"atMs": 1, "unavailable": {"forMs": 0}})"),
            refusal(": /steps/0/unavailable/forMs: must be 1 or more"));
  EXPECT_EQ(mistakeInStep(R"({"atMs": 1, "unavailable": {"calls": 0}})"),
            refusal(": /steps/0/unavailable/calls: must be 1 or more"));
  EXPECT_EQ(mistakeInStep(R"({"atMs": 1, "unavailable": {"days": 1}})"),
            refusal(": /steps/0/unavailable/days: unknown key"));
}

TEST(ScriptTest, StopMustBeTrue) {
  EXPECT_EQ(mistakeInStep(R"({"atMs": 1, "stop": false})"), refusal(": /steps/0/stop: must be true"));
  EXPECT_EQ(mistakeInStep(R"({"atMs": 1, "stop": 1})"), refusal(": /steps/0/stop: must be true or false"));
}

TEST(ScriptTest, ExampleInTheDocumentationIsAScript) {
  const Script script = parseScript(documentedExample("diagnosis.md"), "diagnosis.md");
  ASSERT_EQ(script.size(), 7U);
  EXPECT_EQ(std::get<AtTime>(script[0].when).time, milliseconds(5000));
}

TEST(ScriptTest, FileIsRead) {
  const TemporaryFolder folder;
  EXPECT_EQ(readScript(folder.write("s.json", steps(R"({"atMs": 1, "stop": true})"))).size(), 1U);
  const std::string missing = folder.file("missing.json");
  EXPECT_EQ(errorOf([&] { readScript(missing); }),
            "-1021 " + missing + ": cannot be read: No such file or directory");
}

}  // namespace

}  // namespace host
