// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_SCRIPT_SCRIPT_PLAYER_H
#define CPP2C_HOST_SCRIPT_SCRIPT_PLAYER_H

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>

#include "host/guard/guard.h"
#include "host/script/outage.h"
#include "host/script/script.h"
#include "host/timer/deadlines.h"

class ICfm;
class IEvent;
class ILog;

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

#endif
