// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_SCRIPT_SCRIPT_H
#define CPP2C_HOST_SCRIPT_SCRIPT_H

#include <chrono>
#include <map>
#include <string>
#include <variant>
#include <vector>

#include "host/guard/operation.h"

namespace host {

// When a step is performed: at a time after the start, or before some calls of an operation.
struct AtTime {
  std::chrono::milliseconds time;
};
struct AtCall {
  Operation operation;
  int first;  // number of the first call, counted from 1
  int times;  // number of consecutive calls
};
using Trigger = std::variant<AtTime, AtCall>;

// What a step does.
struct SetValues {
  std::map<std::string, std::string> values;  // by full name
};
struct SendEvent {
  std::string name;
  std::string data;
};
struct Answer {
  int code;  // ignored for an operation that returns an object: its answer is null
};
struct UnavailableFor {
  std::chrono::milliseconds duration;
};
struct UnavailableCalls {
  int number;
};
struct StopLoop {};
using Action = std::variant<SetValues, SendEvent, Answer, UnavailableFor, UnavailableCalls, StopLoop>;

struct Step {
  Trigger when;
  Action action;
};
using Script = std::vector<Step>;

// Reads a script from its text; `source` names it in messages. Throws util::Error for the first mistake.
Script parseScript(const std::string& text, const std::string& source);

// Reads a script file. Also throws util::Error if the file cannot be read.
Script readScript(const std::string& file);

}  // namespace host

#endif
