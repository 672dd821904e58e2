// SPDX-License-Identifier: MIT
// How commands are defined. The name of an argument in the help, or its type if it has one, also selects the
// values that completion offers.
#ifndef CPP2C_CONTEXTCTL_COMMANDS_COMMAND_SET_H
#define CPP2C_CONTEXTCTL_COMMANDS_COMMAND_SET_H

#include <functional>
#include <string>
#include <type_traits>
#include <vector>

#include <CLI/CLI.hpp>

#include "contextctl/commands/session.h"
#include "contextctl/system/failure.h"

namespace contextctl {

// The commands of the command line, and the one that the user has chosen.
class CommandSet {
 public:
  using Action = std::function<ExitStatus(const Session& session)>;

  explicit CommandSet(CLI::App& app) : app_(app) {}
  CommandSet(const CommandSet&) = delete;
  CommandSet& operator=(const CommandSet&) = delete;

  CLI::App& app() const { return app_; }
  const Action& chosen() const { return chosen_; }  // empty: none

  // Adds a command that only has subcommands.
  CLI::App& addGroup(const std::string& name, const std::string& purpose);

  // Adds a command to `parent`: app() or a group. `run` takes the session and owns the variables of the
  // arguments; it throws Failure, and returns the exit status or nothing.
  template <typename Run>
  CLI::App* add(CLI::App& parent, const std::string& name, const std::string& purpose,
                const std::string& examples, Run run) {
    return addAction(parent, name, purpose, examples, [run](const Session& session) {
      if constexpr (std::is_void_v<decltype(run(session))>) {
        run(session);
        return kExitOk;
      } else {
        return run(session);
      }
    });
  }

 private:
  CLI::App* addAction(CLI::App& parent, const std::string& name, const std::string& purpose,
                      const std::string& examples, const Action& action);

  CLI::App& app_;
  Action chosen_;
};

template <typename T>
CLI::Option* addArgument(CLI::App* command, const std::string& name, T& target, const std::string& meaning) {
  return command->add_option(name, target, meaning)->type_name("");
}

// Adds the option --count; `items` is what it counts.
void addCount(CLI::App* command, int& count, const std::string& items);

CLI::Validator isPositive();
CLI::Validator isInteger();  // of 32 bits
CLI::Validator isOneOf(const std::vector<std::string>& choices);

}  // namespace contextctl

#endif
