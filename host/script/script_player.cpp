// SPDX-License-Identifier: MIT
#include "host/script/script_player.h"

#include <utility>

#include "binding/context.h"
#include "host/include/cpp2c_host.h"
#include "include_c"

namespace host {
namespace {

bool isAt(const Trigger& when, Operation operation, std::uint64_t number) {
  const auto* call = std::get_if<AtCall>(&when);
  if (call == nullptr || call->operation != operation) return false;
  const auto first = static_cast<std::uint64_t>(call->first);
  return number >= first && number - first < static_cast<std::uint64_t>(call->times);
}

}  // namespace

ScriptPlayer::ScriptPlayer(Script script, Guard& guard, Services services)
    : script_(std::move(script)), services_(std::move(services)) {
  guard.add(*this);
  for (const Step& step : script_) {
    const auto* at = std::get_if<AtTime>(&step.when);
    if (at == nullptr) continue;
    services_.deadlines.add(services_.deadlines.in(at->time), [this, &step] { execute(step.action); });
  }
}

std::optional<int> ScriptPlayer::before(const OperationCall& call) {
  const Operation operation = call.operation;
  const std::uint64_t number = ++calls_[operation];
  std::optional<int> answer = executeStepsBefore(operation, number);
  if (outage_.failsCall(services_.clock.now())) answer = C_RESULT_NOT_INIT;
  if (answer) {
    const std::string shown = returnsObject(operation) ? "null" : std::to_string(*answer);
    logInfo(nameOf(operation) + (", call " + std::to_string(number)) + ": answers " + shown);
  }
  return answer;
}

// If several steps give an answer, the first one counts.
std::optional<int> ScriptPlayer::executeStepsBefore(Operation operation, std::uint64_t number) {
  std::optional<int> answer;
  for (const Step& step : script_) {
    if (!isAt(step.when, operation, number)) continue;
    const std::optional<int> given = execute(step.action);
    if (!answer) answer = given;
  }
  return answer;
}

std::optional<int> ScriptPlayer::execute(const Action& action) {
  return std::visit([this](const auto& alternative) { return execute(alternative); }, action);
}

std::optional<int> ScriptPlayer::execute(const SetValues& set) {
  for (const auto& [name, value] : set.values) {
    logInfo("sets " + name);
    const int result = services_.config.setValue(name, value, 0);
    if (result != C_RESULT_OK) logFailure("set " + name, result);
  }
  return std::nullopt;
}

std::optional<int> ScriptPlayer::execute(const SendEvent& event) {
  logInfo("sends event " + event.name);
  const int result = services_.events.notify(event.name, event.data, 0);
  if (result != C_RESULT_OK) logFailure("send event " + event.name, result);
  return std::nullopt;
}

std::optional<int> ScriptPlayer::execute(const Answer& answer) {
  return answer.code;
}

// The deadline also makes a virtual clock advance to the end of the outage, even if no timer is armed.
std::optional<int> ScriptPlayer::execute(const UnavailableFor& unavailable) {
  logInfo("the context is unavailable for " + std::to_string(unavailable.duration.count()) + " ms");
  const Deadlines::Deadline end = services_.deadlines.in(unavailable.duration);
  outage_.lastUntil(end.first);
  services_.deadlines.add(end, [this] { endOutage(); });
  return std::nullopt;
}

std::optional<int> ScriptPlayer::execute(const UnavailableCalls& unavailable) {
  logInfo("the context is unavailable for " + std::to_string(unavailable.number) + " calls");
  outage_.lastForCalls(unavailable.number);
  return std::nullopt;
}

// The loop may not be running yet. The deadline stops it when it runs.
std::optional<int> ScriptPlayer::execute(const StopLoop& /*stop*/) {
  logInfo("stops the loop");
  services_.deadlines.add(services_.deadlines.in(Clock::Duration::zero()), services_.stop_loop);
  return std::nullopt;
}

void ScriptPlayer::endOutage() {
  if (outage_.isOver(services_.clock.now())) logInfo("the context is available again");
}

void ScriptPlayer::logInfo(const std::string& text) {
  services_.log.record("script", C_LOG_INFO, text.c_str());
}

void ScriptPlayer::logFailure(const std::string& action, int result) {
  const std::string text = "cannot " + action + ": result " + std::to_string(result);
  services_.log.record("script", C_LOG_WARNING, text.c_str());
}

}  // namespace host
