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

// A time in which the context is not available, or a number of calls that do not reach it.
class Outage {
 public:
  void lastUntil(Clock::TimePoint end) { end_ = std::max(end_, end); }
  void lastForCalls(int calls) { calls_ = std::max(calls_, calls); }

  bool isOver(Clock::TimePoint now) const { return now >= end_ && calls_ == 0; }

  // Whether a call does not reach the context, which is then one of the number.
  bool stopsCall(Clock::TimePoint now) {
    const bool stops = !isOver(now);
    if (calls_ > 0) calls_--;
    return stops;
  }

 private:
  Clock::TimePoint end_ = Clock::TimePoint::min();
  int calls_ = 0;
};

// Does what a script says: at its times, and before the calls that it names. Each step is told in the log,
// where nothing but the names of values and events is shown.
class ScriptPlayer final : public IOperationCheck {
 public:
  // What the steps act upon.
  struct Stage {
    const Clock& clock;
    Deadlines& deadlines;
    ILog& log;
    ICfm& config;
    IEvent& events;
    std::function<void()> stop_loop;
  };

  ScriptPlayer(Script script, Guard& guard, Stage stage);
  ScriptPlayer(const ScriptPlayer&) = delete;
  ScriptPlayer& operator=(const ScriptPlayer&) = delete;

  // Counts the call.
  std::optional<int> before(const OperationCall& call) override;

 private:
  // Each does one thing, and returns the answer of the call before which that is done, if it gives one.
  std::optional<int> perform(const SetValues& set);
  std::optional<int> perform(const SendEvent& event);
  std::optional<int> perform(const Answer& answer);
  std::optional<int> perform(const UnavailableFor& unavailable);
  std::optional<int> perform(const UnavailableCalls& unavailable);
  std::optional<int> perform(const StopLoop& stop);
  std::optional<int> perform(const What& what);

  std::optional<int> performBefore(Operation operation, std::uint64_t number);
  void endOutage();
  void tell(const std::string& text);
  void tellFailure(const std::string& what, int result);

  const Script script_;
  const Stage stage_;
  std::map<Operation, std::uint64_t> calls_;
  Outage outage_;
};

}  // namespace host

#endif
