// SPDX-License-Identifier: MIT
#include "host/script/script.h"

#include <optional>

#include "host/json/document.h"
#include "host/json/read_file.h"
#include "util/text.h"

using std::chrono::milliseconds;

namespace {

Operation readOperation(const Item& item) {
  const std::string name = item.text();
  const auto operation = findOperation(name);
  if (!operation) item.fail(util::quoted(name) + " is not an operation");
  return *operation;
}

void refuseMembers(const Item& item, std::initializer_list<const char*> names, const char* owner) {
  for (const char* name : names) {
    if (auto member = item.member(name)) member->fail("belongs to " + util::quoted(owner));
  }
}

AtCall readCall(const Item& step, const Item& call) {
  AtCall when{readOperation(call), step.required("nth").integerFrom(1), 1};
  if (auto times = step.member("times")) when.times = times->integerFrom(1);
  return when;
}

When readWhen(const Item& step) {
  const auto at = step.member("at");
  const auto call = step.member("call");
  if (at.has_value() == call.has_value()) step.fail("needs either \"at\" or \"call\"");
  if (call) return readCall(step, *call);
  refuseMembers(step, {"nth", "times", "answer"}, "call");
  return AtTime{milliseconds(at->integerFrom(0))};
}

What readSet(const Item& /*step*/, const Item& set, const When& /*when*/) {
  SetValues what;
  set.eachMember([&](const std::string& name, const Item& value) { what.values[name] = value.valueText(); });
  return what;
}

What readEvent(const Item& step, const Item& event, const When& /*when*/) {
  SendEvent what{event.text(), ""};
  if (auto data = step.member("data")) what.data = data->text();
  return what;
}

What readAnswer(const Item& /*step*/, const Item& answer, const When& when) {
  const Operation operation = std::get<AtCall>(when).operation;
  if (!answersObject(operation)) {
    if (answer.isNull()) answer.fail(std::string(nameOf(operation)) + " cannot answer null");
    return Answer{answer.integer()};
  }
  if (!answer.isNull()) answer.fail(std::string(nameOf(operation)) + " can be made to answer null only");
  return Answer{0};
}

What readUnavailable(const Item& /*step*/, const Item& unavailable, const When& /*when*/) {
  unavailable.expectMembers({"forMs", "calls"});
  const auto duration = unavailable.member("forMs");
  const auto calls = unavailable.member("calls");
  if (duration.has_value() == calls.has_value()) unavailable.fail("needs either \"forMs\" or \"calls\"");
  if (duration) return UnavailableFor{milliseconds(duration->integerFrom(1))};
  return UnavailableCalls{calls->integerFrom(1)};
}

What readStop(const Item& /*step*/, const Item& stop, const When& /*when*/) {
  if (!stop.flag()) stop.fail("must be true");
  return StopLoop{};
}

struct Action {
  const char* key;
  What (*read)(const Item& step, const Item& item, const When& when);
};

constexpr Action kActions[] = {
    {"set", readSet},   {"event", readEvent}, {"answer", readAnswer}, {"unavailable", readUnavailable},
    {"stop", readStop},
};

What readWhat(const Item& step, const When& when) {
  std::optional<What> what;
  for (const Action& action : kActions) {
    const auto item = step.member(action.key);
    if (!item) continue;
    if (what) item->fail("a step does one thing");
    what = action.read(step, *item, when);
  }
  if (!what) step.fail(R"(needs one of "set", "event", "answer", "unavailable" and "stop")");
  if (!std::holds_alternative<SendEvent>(*what)) refuseMembers(step, {"data"}, "event");
  return *what;
}

Step readStep(const Item& item) {
  item.expectMembers({"at", "call", "nth", "times", "set", "event", "data", "answer", "unavailable", "stop"});
  When when = readWhen(item);
  What what = readWhat(item, when);
  return {when, std::move(what)};
}

}  // namespace

Script parseScript(const std::string& text, const std::string& source) {
  Script script;
  readDocument(text, source, [&](const Item& document) {
    document.expectMembers({"steps"});
    document.required("steps").eachElement([&](const Item& step) { script.push_back(readStep(step)); });
  });
  return script;
}

Script readScript(const std::string& file) {
  return parseScript(readFile(file), file);
}
