// SPDX-License-Identifier: MIT
#include "host/script/script.h"

#include <optional>

#include "host/json/document.h"
#include "util/text.h"

namespace host {

using std::chrono::milliseconds;

namespace {

Operation readOperation(const JsonValue& item) {
  const std::string name = item.string();
  const auto operation = findOperation(name);
  if (!operation) item.fail("unknown operation " + util::quoted(name));
  return *operation;
}

void refuseMembers(const JsonValue& item, std::initializer_list<const char*> names, const char* owner) {
  for (const char* name : names) {
    if (auto member = item.member(name)) member->fail("is only for a step with " + util::quoted(owner));
  }
}

AtCall readCall(const JsonValue& step, const JsonValue& call) {
  AtCall when{readOperation(call), step.required("nth").integerFrom(1), 1};
  if (auto times = step.member("times")) when.times = times->integerFrom(1);
  return when;
}

// "at" is the older name of "atMs" and is still accepted.
Trigger readTrigger(const JsonValue& step) {
  auto at = step.member("atMs");
  if (const auto older = step.member("at")) {
    if (at) older->fail("is the older name of \"atMs\"; use only one of them");
    at.emplace(*older);
  }
  const auto call = step.member("call");
  if (at.has_value() == call.has_value()) step.fail("needs either \"atMs\" or \"call\"");
  if (call) return readCall(step, *call);
  refuseMembers(step, {"nth", "times", "answer"}, "call");
  return AtTime{milliseconds(at->integerFrom(0))};
}

Action readSet(const JsonValue& /*step*/, const JsonValue& set, const Trigger& /*when*/) {
  SetValues action;
  set.eachMember(
      [&](const std::string& name, const JsonValue& value) { action.values[name] = value.leafValue(); });
  return action;
}

Action readEvent(const JsonValue& step, const JsonValue& event, const Trigger& /*when*/) {
  SendEvent action{event.string(), ""};
  if (auto data = step.member("data")) action.data = data->string();
  return action;
}

Action readAnswer(const JsonValue& /*step*/, const JsonValue& answer, const Trigger& when) {
  const Operation operation = std::get<AtCall>(when).operation;
  if (!returnsObject(operation)) {
    if (answer.isNull()) answer.fail(std::string(nameOf(operation)) + " cannot answer null");
    return Answer{answer.integer()};
  }
  if (!answer.isNull()) answer.fail(std::string(nameOf(operation)) + " can only answer null");
  return Answer{0};
}

Action readUnavailable(const JsonValue& /*step*/, const JsonValue& unavailable, const Trigger& /*when*/) {
  unavailable.allowOnly({"forMs", "calls"});
  const auto duration = unavailable.member("forMs");
  const auto calls = unavailable.member("calls");
  if (duration.has_value() == calls.has_value()) unavailable.fail("needs either \"forMs\" or \"calls\"");
  if (duration) return UnavailableFor{milliseconds(duration->integerFrom(1))};
  return UnavailableCalls{calls->integerFrom(1)};
}

Action readStop(const JsonValue& /*step*/, const JsonValue& stop, const Trigger& /*when*/) {
  if (!stop.boolean()) stop.fail("must be true");
  return StopLoop{};
}

struct ActionReader {
  const char* key;
  Action (*read)(const JsonValue& step, const JsonValue& item, const Trigger& when);
};

constexpr ActionReader kActionReaders[] = {
    {"set", readSet},   {"event", readEvent}, {"answer", readAnswer}, {"unavailable", readUnavailable},
    {"stop", readStop},
};

Action readAction(const JsonValue& step, const Trigger& when) {
  std::optional<Action> action;
  for (const ActionReader& reader : kActionReaders) {
    const auto item = step.member(reader.key);
    if (!item) continue;
    if (action) item->fail("a step can have only one action");
    action = reader.read(step, *item, when);
  }
  if (!action) step.fail(R"(needs one of "set", "event", "answer", "unavailable" and "stop")");
  if (!std::holds_alternative<SendEvent>(*action)) refuseMembers(step, {"data"}, "event");
  return *action;
}

Step readStep(const JsonValue& item) {
  item.allowOnly(
      {"atMs", "at", "call", "nth", "times", "set", "event", "data", "answer", "unavailable", "stop"});
  const Trigger when = readTrigger(item);
  Action action = readAction(item, when);
  return {when, std::move(action)};
}

}  // namespace

Script parseScript(const std::string& text, const std::string& source) {
  const JsonDocument document(text, source);
  const JsonValue json = document.root();
  json.allowOnly({"steps"});
  Script script;
  json.required("steps").eachElement([&](const JsonValue& step) { script.push_back(readStep(step)); });
  return script;
}

Script readScript(const std::string& file) {
  return parseScript(readFile(file), file);
}

}  // namespace host
