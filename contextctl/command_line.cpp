// SPDX-License-Identifier: MIT
#include "contextctl/command_line.h"

#include <iostream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "contextctl/commands/command_set.h"
#include "contextctl/commands/commands.h"
#include "contextctl/commands/session.h"
#include "util/similar_name.h"
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
  Command(app)
      .option("--control", "PATH", options.socket, "Socket of the context")
      .seconds("--timeout", options.seconds, "Seconds to wait for an answer; default: 10")
      .flag("--json", options.json, "Print JSON, for scripts")
      .flag("--reveal", options.reveal, "Show the values of \"pwd\" leaves");
}

void addCommands(CommandSet& commands) {
  addLeafCommands(commands);
  addObjectCommands(commands);
  addFollowCommands(commands);
  addEventCommands(commands);
  addContextCommands(commands);
  addStatsCommand(commands);
  addTopCommand(commands);
  addLeafFileCommands(commands);
  addInspectCommand(commands);
  addCompletionCommands(commands);
}

// The chosen command, or the last group; `app` if none was chosen.
const CLI::App& chosenCommand(const CLI::App& app) {
  const std::vector<CLI::App*> chosen = app.get_subcommands();
  return chosen.empty() ? app : chosenCommand(*chosen.front());
}

std::string adviceFor(const util::SimilarName& similar) {
  return similar.best().empty() ? "; try --help" : "; did you mean " + util::quoted(similar.best()) + '?';
}

// A command also takes the options of its parents.
[[noreturn]] void failUnknownOption(const CLI::App& command, const std::string& option) {
  util::SimilarName similar(option);
  for (const CLI::App* app = &command; app != nullptr; app = app->get_parent()) {
    for (const CLI::Option* known : app->get_options()) {
      for (const std::string& name : known->get_lnames()) similar.consider("--" + name);
    }
  }
  throw Failure(kExitUsage, "unknown option " + util::quoted(option) + adviceFor(similar));
}

[[noreturn]] void failUnexpected(const CLI::App& app, const std::string& word) {
  const CLI::App& command = chosenCommand(app);
  if (util::startsWith(word, "-")) failUnknownOption(command, word.substr(0, word.find('=')));
  const std::vector<const CLI::App*> known =
      command.get_subcommands([](const CLI::App* c) { return !c->get_group().empty(); });
  if (known.empty()) throw Failure(kExitUsage, "unexpected argument " + util::quoted(word) + "; try --help");
  util::SimilarName similar(word);
  for (const CLI::App* c : known) similar.consider(c->get_name());
  const std::string place = &command == &app ? "" : " after " + util::quoted(command.get_name());
  throw Failure(kExitUsage, "unknown command " + util::quoted(word) + place + adviceFor(similar));
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
    failUnexpected(app, app.remaining(true).front());
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
