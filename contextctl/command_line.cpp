// SPDX-License-Identifier: MIT
#include "contextctl/command_line.h"

#include <iostream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "contextctl/commands/command_set.h"
#include "contextctl/commands/commands.h"
#include "contextctl/commands/session.h"
#include "util/text.h"

namespace contextctl {
namespace {

constexpr const char* kFooter =
    "Exit status: 0 success; 1 the answer is no (unknown name, refused value, difference, no fit);\n"
    "2 wrong usage; 3 no connection, no valid answer in time, or a file that cannot be read or written.\n"
    "\n"
    "Put \"--\" before a value that begins with \"-\" and is not a number.";

void addOptions(CLI::App& app, Session::Options& options) {
  app.set_version_flag("--version", "contextctl " CPP2C_VERSION, "Print the version");
  app.add_option("--control", options.socket, "Socket of the context")->type_name("PATH");
  app.add_option("--timeout", options.seconds, "Seconds to wait for an answer; default: 10")
      ->type_name("S")
      ->check(isPositive());
  app.add_flag("--json", options.json, "Print JSON, for scripts");
  app.add_flag("--reveal", options.reveal, "Show the values of \"pwd\" leaves");
}

void addCommands(CommandSet& commands) {
  addLeafCommands(commands);
  addObjectCommands(commands);
  addFollowCommands(commands);
  addEventCommands(commands);
  addContextCommands(commands);
  addTopCommand(commands);
  addLeafFileCommands(commands);
  addInspectCommand(commands);
  addCompletionCommands(commands);
}

// Returns false if the user asked for the help or the version, which has been printed.
bool parse(CLI::App& app, int argc, const char* const* argv) {
  try {
    app.parse(argc, argv);
    return true;
  } catch (const CLI::Success& request) {
    app.exit(request);
    return false;
  } catch (const CLI::ExtrasError&) {
    throw Failure(kExitUsage,
                  "unexpected argument " + util::quoted(app.remaining(true).front()) + "; try --help");
  } catch (const CLI::ParseError& error) {
    throw Failure(kExitUsage, error.what());
  }
}

[[noreturn]] void failWithoutCommand(const CLI::App& app) {
  const std::vector<CLI::App*> groups = app.get_subcommands();
  const std::string place = groups.empty() ? "" : " after " + util::quoted(groups.front()->get_name());
  throw Failure(kExitUsage, "no command" + place + "; try --help");
}

ExitStatus run(int argc, const char* const* argv) {
  CLI::App app("Inspects and changes a running host context.", "contextctl");
  Session::Options options;
  options.socket = defaultSocket();
  app.set_help_flag("-h,--help", "Print this help");
  app.footer(kFooter);
  app.fallthrough();
  addOptions(app, options);
  CommandSet commands(app);
  addCommands(commands);

  if (!parse(app, argc, argv)) return kExitOk;
  if (!commands.chosen()) failWithoutCommand(app);
  return commands.chosen()(Session(options, std::cout));
}

}  // namespace

ExitStatus runCommandLine(int argc, const char* const* argv) {
  const ExitStatus status = run(argc, argv);
  flush(std::cout);
  return status;
}

}  // namespace contextctl
