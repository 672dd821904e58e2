// SPDX-License-Identifier: MIT
#include "contextctl/commands/command_set.h"

#include <cstdint>
#include <cstdlib>
#include <limits>

#include "util/text.h"

namespace contextctl {
namespace {

// `check` returns what is wrong with a text, to be appended to it; empty: nothing.
template <typename Check>
CLI::Validator validator(Check check) {
  return CLI::Validator(
      [check](const std::string& text) {
        const std::string error = check(text);
        return error.empty() ? error : util::quoted(text) + ' ' + error;
      },
      "");
}

}  // namespace

CLI::App& CommandSet::addGroup(const std::string& name, const std::string& purpose) {
  CLI::App* group = app_.add_subcommand(name, purpose);
  group->fallthrough();
  return *group;
}

CLI::App* CommandSet::addAction(CLI::App& parent, const std::string& name, const std::string& purpose,
                                const std::string& examples, const Action& action) {
  CLI::App* command = parent.add_subcommand(name, purpose);
  if (!examples.empty()) command->footer("Examples:\n" + examples);
  command->callback([this, action] { chosen_ = action; });
  return command;
}

void addCount(CLI::App* command, int& count, const std::string& items) {
  command->add_option("--count", count, "End after N " + items)
      ->type_name("N")
      ->check(isPositive())
      ->check(isInteger());
}

CLI::Validator isPositive() {
  return validator([](const std::string& text) {
    char* end = nullptr;
    const double number = std::strtod(text.c_str(), &end);
    return *end == '\0' && number > 0 ? "" : "is not a positive number";
  });
}

CLI::Validator isInteger() {
  return validator([](const std::string& text) {
    char* end = nullptr;
    const long long number = std::strtoll(text.c_str(), &end, 0);
    const bool is_number = end != text.c_str() && *end == '\0';
    const bool fits = number >= std::numeric_limits<std::int32_t>::min() &&
                      number <= std::numeric_limits<std::int32_t>::max();
    return is_number && fits ? "" : "is not a 32-bit integer";
  });
}

CLI::Validator isOneOf(const std::vector<std::string>& choices) {
  return validator([choices](const std::string& text) {
    std::string names;
    for (const std::string& choice : choices) {
      if (choice == text) return std::string();
      names += (names.empty() ? "" : ", ") + choice;
    }
    return "is unknown; known: " + names;
  });
}

}  // namespace contextctl
