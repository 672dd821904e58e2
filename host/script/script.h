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

// When a step is done: at a time after the start, or before some calls of an operation.
struct AtTime {
  std::chrono::milliseconds time;
};
struct AtCall {
  Operation operation;
  int first;  // the first call has the number 1
  int times;  // calls in a row
};
using When = std::variant<AtTime, AtCall>;

// What is done.
struct SetValues {
  std::map<std::string, std::string> values;  // by full name
};
struct SendEvent {
  std::string name;
  std::string data;
};
struct Answer {
  int code;  // not looked at for an operation that answers an object: it answers null
};
struct UnavailableFor {
  std::chrono::milliseconds duration;
};
struct UnavailableCalls {
  int number;
};
struct StopLoop {};
using What = std::variant<SetValues, SendEvent, Answer, UnavailableFor, UnavailableCalls, StopLoop>;

struct Step {
  When when;
  What what;
};
using Script = std::vector<Step>;

// Reads a script from its text; `source` names it in messages. Throws util::Error for the first mistake.
Script parseScript(const std::string& text, const std::string& source);

// Reads a script file. Throws util::Error also if that cannot be read.
Script readScript(const std::string& file);

}  // namespace host

#endif
