// SPDX-License-Identifier: MIT
#include "host/script/script_player.h"

#include <utility>

#include "binding/context.h"
#include "host/include/cpp2c_host.h"
#include "include_c"

namespace host {
namespace {

bool isAt(const When& when, Operation operation, std::uint64_t number) {
  const auto* call = std::get_if<AtCall>(&when);
  if (call == nullptr || call->operation != operation) return false;
  const auto first = static_cast<std::uint64_t>(call->first);
  return number >= first && number - first < static_cast<std::uint64_t>(call->times);
}

}  // namespace

ScriptPlayer::ScriptPlayer(Script script, Guard& guard, Stage stage)
    : script_(std::move(script)), stage_(std::move(stage)) {
  guard.add(*this);
  for (const Step& step : script_) {
    const auto* at = std::get_if<AtTime>(&step.when);
    if (at == nullptr) continue;
    stage_.deadlines.add(stage_.deadlines.in(at->time), [this, &step] { perform(step.what); });
  }
}

std::optional<int> ScriptPlayer::before(const OperationCall& call) {
  const Operation operation = call.operation;
  const std::uint64_t number = ++calls_[operation];
  std::optional<int> answer = performBefore(operation, number);
  if (outage_.stopsCall(stage_.clock.now())) answer = C_RESULT_NOT_INIT;
  if (answer) {
    const std::string shown = answersObject(operation) ? "null" : std::to_string(*answer);
    tell(nameOf(operation) + (", call " + std::to_string(number)) + ": answers " + shown);
  }
  return answer;
}

// The first step that gives an answer decides.
std::optional<int> ScriptPlayer::performBefore(Operation operation, std::uint64_t number) {
  std::optional<int> answer;
  for (const Step& step : script_) {
    if (!isAt(step.when, operation, number)) continue;
    const std::optional<int> given = perform(step.what);
    if (!answer) answer = given;
  }
  return answer;
}

std::optional<int> ScriptPlayer::perform(const What& what) {
  return std::visit([this](const auto& one) { return perform(one); }, what);
}

std::optional<int> ScriptPlayer::perform(const SetValues& set) {
  for (const auto& [name, value] : set.values) {
    tell("sets " + name);
    const int result = stage_.config.setValue(name, value, 0);
    if (result != C_RESULT_OK) tellFailure("set " + name, result);
  }
  return std::nullopt;
}

std::optional<int> ScriptPlayer::perform(const SendEvent& event) {
  tell("sends event " + event.name);
  const int result = stage_.events.notify(event.name, event.data, 0);
  if (result != C_RESULT_OK) tellFailure("send event " + event.name, result);
  return std::nullopt;
}

std::optional<int> ScriptPlayer::perform(const Answer& answer) {
  return answer.code;
}

// On a virtual clock, the time in which the context is not available must end although nobody waits for it.
std::optional<int> ScriptPlayer::perform(const UnavailableFor& unavailable) {
  tell("the context is unavailable for " + std::to_string(unavailable.duration.count()) + " ms");
  const Deadlines::Deadline end = stage_.deadlines.in(unavailable.duration);
  outage_.lastUntil(end.first);
  stage_.deadlines.add(end, [this] { endOutage(); });
  return std::nullopt;
}

std::optional<int> ScriptPlayer::perform(const UnavailableCalls& unavailable) {
  tell("the context is unavailable for " + std::to_string(unavailable.number) + " calls");
  outage_.lastForCalls(unavailable.number);
  return std::nullopt;
}

// The loop may not be running yet: it is stopped by something that waits on it.
std::optional<int> ScriptPlayer::perform(const StopLoop& /*stop*/) {
  tell("stops the loop");
  stage_.deadlines.add(stage_.deadlines.in(Clock::Duration::zero()), stage_.stop_loop);
  return std::nullopt;
}

void ScriptPlayer::endOutage() {
  if (outage_.isOver(stage_.clock.now())) tell("the context is available again");
}

void ScriptPlayer::tell(const std::string& text) {
  stage_.log.record("script", C_LOG_INFO, text.c_str());
}

void ScriptPlayer::tellFailure(const std::string& what, int result) {
  const std::string text = "cannot " + what + ": result " + std::to_string(result);
  stage_.log.record("script", C_LOG_WARNING, text.c_str());
}

}  // namespace host
