// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_SYSTEM_JSON_H
#define CPP2C_CONTEXTCTL_SYSTEM_JSON_H

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace contextctl {

// JSON that is valid, but exceeds a limit. The text is a predicate, as in "has more than 5 values".
class JsonTooLarge : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Limits JSON from elsewhere while it is parsed: the recursion and the memory that the parsed value takes.
// The arguments of count() are those of a parser callback. It throws JsonTooLarge.
class JsonLimits {
 public:
  explicit JsonLimits(std::size_t most_members) : most_members_(most_members) {}

  void count(int depth, nlohmann::json::parse_event_t event);

 private:
  std::size_t most_members_;
  std::size_t values_ = 0;
  std::vector<std::size_t> members_;  // of the objects that are open, by depth
};

// The text with every control character escaped; nlohmann leaves those beyond U+001F unchanged.
std::string printableJson(const std::string& json);

}  // namespace contextctl

#endif
