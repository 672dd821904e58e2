// SPDX-License-Identifier: MIT
// How commands are defined. Only this and the reading of the command line know the library that parses it.
#ifndef CPP2C_CONTEXTCTL_COMMANDS_COMMAND_SET_H
#define CPP2C_CONTEXTCTL_COMMANDS_COMMAND_SET_H

#include <functional>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "contextctl/commands/session.h"
#include "contextctl/system/failure.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace contextctl {

// The syntax of one command. Arguments have the order of their definition. The name of an argument or of an
// option's value appears in the help and selects what completion offers. The targets are set before the
// command runs; the command owns them.
class Command {
 public:
  explicit Command(CLI::App& app) : app_(app) {}

  Command& require(const std::string& name, std::string& target, const std::string& meaning);
  Command& require(const std::string& name, std::vector<std::string>& target, const std::string& meaning);
  Command& accept(const std::string& name, std::string& target, const std::string& meaning);
  Command& accept(const std::string& name, std::vector<std::string>& target, const std::string& meaning);
  Command& accept(const std::string& name, std::optional<int>& target, const std::string& meaning);

  Command& flag(const std::string& name, bool& target, const std::string& meaning);
  Command& option(const std::string& name, const std::string& value, std::string& target,
                  const std::string& meaning);
  Command& seconds(const std::string& name, double& target, const std::string& meaning);
  Command& count(int& target, const std::string& items);  // --count: the command ends after so many items

  // Allows only these values for what was defined last.
  Command& oneOf(const std::vector<std::string>& choices);

  // Lists the command in a section of its own in the help; "" hides it.
  Command& inSection(const std::string& heading);

 private:
  Command& addArgument(CLI::Option& option);

  CLI::App& app_;
  CLI::Option* last_ = nullptr;
};

// The commands of the command line, and the one that the user has chosen.
class CommandSet {
 public:
  using Action = std::function<ExitStatus(const Session& session)>;

  explicit CommandSet(CLI::App& app) : app_(app) {}
  CommandSet(const CommandSet&) = delete;
  CommandSet& operator=(const CommandSet&) = delete;

  const CLI::App& app() const { return app_; }
  const Action& chosen() const { return chosen_; }  // empty: none

  // Adds a command that only has subcommands.
  void addGroup(const std::string& name, const std::string& purpose);

  // Adds a command; `words` are its name, after that of its group if it has one. `run` takes the session and
  // owns the targets; it throws Failure, and returns the exit status or nothing.
  template <typename Run>
  Command add(const std::string& words, const std::string& purpose, const std::string& examples, Run run) {
    return addAction(words, purpose, examples, [run](const Session& session) {
      if constexpr (std::is_void_v<decltype(run(session))>) {
        run(session);
        return kExitOk;
      } else {
        return run(session);
      }
    });
  }

 private:
  Command addAction(const std::string& words, const std::string& purpose, const std::string& examples,
                    const Action& action);

  CLI::App& app_;
  Action chosen_;
};

}  // namespace contextctl

#endif
