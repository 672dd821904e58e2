// SPDX-License-Identifier: MIT
// Requests and answers: JSON on the wire, texts by name in this program.
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

// The plain members of a JSON object: numbers and booleans as JSON writes them, null as nothing.
class Record {
 public:
  // Throws Failure if there is no such member: the other side does not speak this protocol.
  const std::optional<std::string>& value(const std::string& name) const;
  std::string text(const std::string& name) const { return value(name).value_or(""); }
  double number(const std::string& name) const;

  void set(const std::string& name, std::optional<std::string> value) { members_[name] = std::move(value); }

 private:
  std::map<std::string, std::optional<std::string>> members_;
};

// A JSON object of an answer.
struct Answer {
  Record record;                                          // its plain members
  std::map<std::string, std::vector<Record>> lists;       // its arrays of objects
  std::map<std::string, std::vector<std::string>> names;  // its arrays of texts
  std::string json;                                       // the whole, in one line

  const std::vector<Record>& list(const std::string& name) const;           // throws Failure if there is none
  const std::vector<std::string>& nameList(const std::string& name) const;  // likewise
};

// Throws Failure if the text is no JSON object.
Answer readAnswer(const std::string& text);

// The "error" of a refusal; nothing if the text is none.
std::optional<std::string> readRefusal(const std::string& text);

using Value = std::variant<std::nullptr_t, std::string, std::int64_t, bool>;
using Members = std::vector<std::pair<std::string, Value>>;

// A JSON object in one line. Throws Failure for a text that is not UTF-8.
std::string writeObject(const Members& members);

// {"<name>": [{...}, ...]} in one line.
std::string writeList(const std::string& name, const std::vector<Members>& items);

}  // namespace contextctl

#endif
