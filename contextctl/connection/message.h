// SPDX-License-Identifier: MIT
// Requests and answers. JSON on the wire becomes strings by name.
#ifndef CPP2C_CONTEXTCTL_CONNECTION_MESSAGE_H
#define CPP2C_CONTEXTCTL_CONNECTION_MESSAGE_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace contextctl {

// The parameters of a request. A pair with an empty value is left out.
using Query = std::vector<std::pair<std::string, std::string>>;

// The members of a JSON object that are strings, numbers, booleans or null: numbers and booleans as JSON
// writes them, null as nullopt.
class Record {
 public:
  // Throws Failure if the member is missing.
  const std::optional<std::string>& value(const std::string& name) const;
  std::string text(const std::string& name) const { return value(name).value_or(""); }
  double number(const std::string& name) const;

  void set(const std::string& name, std::optional<std::string> value) { members_[name] = std::move(value); }

 private:
  std::map<std::string, std::optional<std::string>> members_;
};

// The JSON object of an answer.
struct Answer {
  Record record;
  std::map<std::string, std::vector<Record>> objects;       // the arrays of objects
  std::map<std::string, std::vector<std::string>> strings;  // the arrays of strings
  std::string json;                                         // the whole object, on one line

  // Throw Failure if the array is missing.
  const std::vector<Record>& objectArray(const std::string& name) const;
  const std::vector<std::string>& stringArray(const std::string& name) const;
};

// Throws Failure if the text is not a JSON object or exceeds the limits of JSON from elsewhere.
Answer readAnswer(const std::string& text);

// The "error" of a refusal; nullopt if the text is not a refusal.
std::optional<std::string> readRefusal(const std::string& text);

using Value = std::variant<std::nullptr_t, std::string, std::int64_t, bool>;
using Members = std::vector<std::pair<std::string, Value>>;

// A JSON object on one line. Throws Failure if a string is not UTF-8.
std::string writeObject(const Members& members);

// {"<name>": [{...}, ...]} on one line.
std::string writeArray(const std::string& name, const std::vector<Members>& items);

}  // namespace contextctl

#endif
