// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_SCRIPT_SCRIPT_PLAYER_H
#define CPP2C_HOST_SCRIPT_SCRIPT_PLAYER_H

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>

#include "host/clock/clock.h"
#include "host/guard/guard.h"
#include "host/script/script.h"
#include "host/timer/deadlines.h"

class ICfm;
class IEvent;
class ILog;

namespace host {

// A time, or a number of calls, for which the context is unavailable.
class Outage {
 public:
  void lastUntil(Clock::TimePoint end) { end_ = std::max(end_, end); }
  void lastForCalls(int calls) { calls_ = std::max(calls_, calls); }

  bool isOver(Clock::TimePoint now) const { return now >= end_ && calls_ == 0; }

  // Counts one call and returns whether it fails.
  bool failsCall(Clock::TimePoint now) {
    const bool fails = !isOver(now);
    if (calls_ > 0) calls_--;
    return fails;
  }

 private:
  Clock::TimePoint end_ = Clock::TimePoint::min();
  int calls_ = 0;
};

// Performs the steps of a script, at their times and before the calls that they name. Logs each step; values
// and the data of events, which may be secret, are not logged.
class ScriptPlayer final : public IOperationCheck {
 public:
  // The services that the steps use.
  struct Services {
    const Clock& clock;
    Deadlines& deadlines;
    ILog& log;
    ICfm& config;
    IEvent& events;
    std::function<void()> stop_loop;
  };

  ScriptPlayer(Script script, Guard& guard, Services services);
  ScriptPlayer(const ScriptPlayer&) = delete;
  ScriptPlayer& operator=(const ScriptPlayer&) = delete;

  // Counts the call, performs the steps before it, and returns the answer that they give, if any.
  std::optional<int> before(const OperationCall& call) override;

 private:
  // Each executes one action and returns its answer to the call, if it has one.
  std::optional<int> execute(const SetValues& set);
  std::optional<int> execute(const SendEvent& event);
  std::optional<int> execute(const Answer& answer);
  std::optional<int> execute(const UnavailableFor& unavailable);
  std::optional<int> execute(const UnavailableCalls& unavailable);
  std::optional<int> execute(const StopLoop& stop);
  std::optional<int> execute(const Action& action);

  std::optional<int> executeStepsBefore(Operation operation, std::uint64_t number);
  void endOutage();
  void logInfo(const std::string& text);
  void logFailure(const std::string& action, int result);

  const Script script_;
  const Services services_;
  std::map<Operation, std::uint64_t> calls_;
  Outage outage_;
};

}  // namespace host

#endif
