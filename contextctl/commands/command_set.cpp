// SPDX-License-Identifier: MIT
#include "contextctl/commands/command_set.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>

#include <CLI/CLI.hpp>

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

std::string joined(const std::vector<std::string>& words, const char* separator) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : separator) + word;
  return text;
}

CLI::Validator isOneOf(const std::vector<std::string>& choices) {
  return validator([choices](const std::string& text) {
    const bool known = std::find(choices.begin(), choices.end(), text) != choices.end();
    return known ? std::string() : "is unknown; known: " + joined(choices, ", ");
  });
}

}  // namespace

Command& Command::addArgument(CLI::Option& option) {
  last_ = option.type_name("");
  return *this;
}

Command& Command::require(const std::string& name, std::string& target, const std::string& meaning) {
  return addArgument(*app_.add_option(name, target, meaning)->required());
}

Command& Command::require(const std::string& name, std::vector<std::string>& target,
                          const std::string& meaning) {
  return addArgument(*app_.add_option(name, target, meaning)->required());
}

Command& Command::accept(const std::string& name, std::string& target, const std::string& meaning) {
  return addArgument(*app_.add_option(name, target, meaning));
}

Command& Command::accept(const std::string& name, std::vector<std::string>& target,
                         const std::string& meaning) {
  return addArgument(*app_.add_option(name, target, meaning));
}

Command& Command::accept(const std::string& name, std::optional<int>& target, const std::string& meaning) {
  return addArgument(*app_.add_option(name, target, meaning)->check(isInteger()));
}

Command& Command::flag(const std::string& name, bool& target, const std::string& meaning) {
  last_ = app_.add_flag(name, target, meaning);
  return *this;
}

Command& Command::option(const std::string& name, const std::string& value, std::string& target,
                         const std::string& meaning) {
  last_ = app_.add_option(name, target, meaning)->type_name(value);
  return *this;
}

Command& Command::seconds(const std::string& name, double& target, const std::string& meaning) {
  last_ = app_.add_option(name, target, meaning)->type_name("S")->check(isPositive());
  return *this;
}

Command& Command::count(int& target, const std::string& items) {
  last_ = app_.add_option("--count", target, "End after N " + items)
              ->type_name("N")
              ->check(isPositive())
              ->check(isInteger());
  return *this;
}

Command& Command::oneOf(const std::vector<std::string>& choices) {
  last_->type_name(joined(choices, "|"))->check(isOneOf(choices));
  return *this;
}

Command& Command::inSection(const std::string& heading) {
  app_.group(heading);
  return *this;
}

void CommandSet::addGroup(const std::string& name, const std::string& purpose) {
  app_.add_subcommand(name, purpose)->fallthrough();
}

Command CommandSet::addAction(const std::string& words, const std::string& purpose,
                              const std::string& examples, const Action& action) {
  const std::size_t space = words.rfind(' ');
  const bool in_group = space != std::string::npos;
  CLI::App& parent = in_group ? *app_.get_subcommand(words.substr(0, space)) : app_;
  CLI::App* command = parent.add_subcommand(in_group ? words.substr(space + 1) : words, purpose);
  if (!examples.empty()) command->footer("Examples:\n" + examples);
  command->callback([this, action] { chosen_ = action; });
  return Command(*command);
}

}  // namespace contextctl
