// SPDX-License-Identifier: MIT
#include "tests/support/call_log.h"

#include <utility>

Calls CallLog::take() {
  return std::exchange(calls_, {});
}

std::string CallLog::shown(const std::string& text) {
  std::string result = "'";
  for (const char c : text) result += c == '\0' ? std::string("\\0") : std::string(1, c);
  return result + '\'';
}

std::string CallLog::shown(const char* text) {
  return text != nullptr ? shown(std::string(text)) : "null";
}

std::string CallLog::shown(const void* object) {
  return object != nullptr ? "object" : "null";
}

int CallLog::finish(const std::string& operation, const std::vector<std::string>& arguments) {
  std::string list;
  for (const std::string& argument : arguments) list += (list.empty() ? "" : ", ") + argument;
  const std::string call = operation + '(' + list + ')';
  calls_.push_back(call);
  if (on_call) on_call(call);

  const auto result = results.find(operation);
  return result != results.end() ? result->second : 0;
}
