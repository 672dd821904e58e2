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

// "at" is the older name of "atMs"; files that use it stay valid.
When readWhen(const JsonValue& step) {
  auto at = step.member("atMs");
  if (const auto older = step.member("at")) {
    if (at) older->fail("is another name of \"atMs\"");
    at.emplace(*older);
  }
  const auto call = step.member("call");
  if (at.has_value() == call.has_value()) step.fail("needs either \"atMs\" or \"call\"");
  if (call) return readCall(step, *call);
  refuseMembers(step, {"nth", "times", "answer"}, "call");
  return AtTime{milliseconds(at->integerFrom(0))};
}

What readSet(const JsonValue& /*step*/, const JsonValue& set, const When& /*when*/) {
  SetValues what;
  set.eachMember(
      [&](const std::string& name, const JsonValue& value) { what.values[name] = value.leafValue(); });
  return what;
}

What readEvent(const JsonValue& step, const JsonValue& event, const When& /*when*/) {
  SendEvent what{event.string(), ""};
  if (auto data = step.member("data")) what.data = data->string();
  return what;
}

What readAnswer(const JsonValue& /*step*/, const JsonValue& answer, const When& when) {
  const Operation operation = std::get<AtCall>(when).operation;
  if (!answersObject(operation)) {
    if (answer.isNull()) answer.fail(std::string(nameOf(operation)) + " cannot answer null");
    return Answer{answer.integer()};
  }
  if (!answer.isNull()) answer.fail(std::string(nameOf(operation)) + " can only answer null");
  return Answer{0};
}

What readUnavailable(const JsonValue& /*step*/, const JsonValue& unavailable, const When& /*when*/) {
  unavailable.allowOnly({"forMs", "calls"});
  const auto duration = unavailable.member("forMs");
  const auto calls = unavailable.member("calls");
  if (duration.has_value() == calls.has_value()) unavailable.fail("needs either \"forMs\" or \"calls\"");
  if (duration) return UnavailableFor{milliseconds(duration->integerFrom(1))};
  return UnavailableCalls{calls->integerFrom(1)};
}

What readStop(const JsonValue& /*step*/, const JsonValue& stop, const When& /*when*/) {
  if (!stop.boolean()) stop.fail("must be true");
  return StopLoop{};
}

struct Action {
  const char* key;
  What (*read)(const JsonValue& step, const JsonValue& item, const When& when);
};

constexpr Action kActions[] = {
    {"set", readSet},   {"event", readEvent}, {"answer", readAnswer}, {"unavailable", readUnavailable},
    {"stop", readStop},
};

What readWhat(const JsonValue& step, const When& when) {
  std::optional<What> what;
  for (const Action& action : kActions) {
    const auto item = step.member(action.key);
    if (!item) continue;
    if (what) item->fail("a step can do only one thing");
    what = action.read(step, *item, when);
  }
  if (!what) step.fail(R"(needs one of "set", "event", "answer", "unavailable" and "stop")");
  if (!std::holds_alternative<SendEvent>(*what)) refuseMembers(step, {"data"}, "event");
  return *what;
}

Step readStep(const JsonValue& item) {
  item.allowOnly(
      {"atMs", "at", "call", "nth", "times", "set", "event", "data", "answer", "unavailable", "stop"});
  When when = readWhen(item);
  What what = readWhat(item, when);
  return {when, std::move(what)};
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
