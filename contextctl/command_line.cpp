// SPDX-License-Identifier: MIT
// Everything that the command line understands. What an argument is called in the help, or its type where
// that is named, also tells completion what may stand there.
#include "contextctl/command_line.h"

#include <cstdlib>
#include <functional>
#include <iostream>
#include <string>
#include <type_traits>
#include <vector>

#include <CLI/CLI.hpp>

#include "contextctl/commands/commands.h"
#include "contextctl/commands/session.h"
#include "contextctl/completion/candidates.h"
#include "contextctl/completion/scripts.h"
#include "contextctl/inspect/inspect.h"

namespace contextctl {
namespace {

// The arguments of all commands: a command line has but one of them.
struct Arguments {
  std::vector<std::string> words;
  std::string leaf, value, prefix, object, instance, event, data, file, shell;
  int attribute = 0;
  int count = 0;
  double interval = 2;
  bool create = false;
  std::string kind = "context";
  InspectOptions inspect;
};

class CommandLine {
 public:
  CommandLine();

  ExitStatus run(int argc, const char* const* argv);

 private:
  using Action = std::function<ExitStatus(const Session& session)>;

  void addLeafCommands();
  void addObjectCommands();
  void addStreamCommands();
  void addContextCommands();
  void addFileCommands();
  void addInspect();
  void addCompletion();

  // `command` takes the session; its exit status is 0 if it returns none.
  template <typename Command>
  CLI::App* add(CLI::App& parent, const std::string& name, const std::string& purpose,
                const std::string& examples, Command command);
  void addCount(CLI::App* command, const std::string& what);

  ExitStatus inspectLibrary(const Session& session);
  ExitStatus completeWords(const Session& session);

  CLI::App app_;
  Session::Wishes wishes_;
  Arguments arguments_;
  Action action_;
};

template <typename Command>
CLI::App* CommandLine::add(CLI::App& parent, const std::string& name, const std::string& purpose,
                           const std::string& examples, Command command) {
  CLI::App* added = parent.add_subcommand(name, purpose);
  if (!examples.empty()) added->footer("Examples:\n" + examples);
  added->callback([this, command] {
    action_ = [command](const Session& session) {
      if constexpr (std::is_void_v<decltype(command(session))>) {
        command(session);
        return kExitOk;
      } else {
        return command(session);
      }
    };
  });
  return added;
}

template <typename T>
CLI::Option* addArgument(CLI::App* command, const std::string& name, T& target, const std::string& meaning) {
  return command->add_option(name, target, meaning)->type_name("");
}

CLI::Validator isPositive() {
  const auto check = [](const std::string& text) {
    char* end = nullptr;
    const double number = std::strtod(text.c_str(), &end);
    return *end == '\0' && number > 0 ? std::string() : text + " is no number above 0";
  };
  return CLI::Validator(check, "");
}

// The help names the choices as the type.
CLI::Validator isOneOf(const std::vector<std::string>& choices) {
  return CLI::IsMember(choices).description("");
}

constexpr const char* kExitStatuses =
    "Exit status: 0 done; 1 the answer is no (unknown name, refused value, difference, no fit);\n"
    "2 wrong usage; 3 no connection, no answer in time, or nothing that can be read.\n"
    "\n"
    "A value that begins with \"-\" and is no number stands after \"--\".";

CommandLine::CommandLine()
    : app_("Looks into a running host context, and changes what it holds.", "contextctl") {
  wishes_.control = defaultControl();
  app_.footer(kExitStatuses);
  app_.set_version_flag("--version", "contextctl " CPP2C_VERSION);
  app_.fallthrough();
  app_.add_option("--control", wishes_.control, "Socket of the context")->type_name("PATH");
  app_.add_option("--timeout", wishes_.seconds, "Seconds to wait for an answer (10)")
      ->type_name("S")
      ->check(isPositive());
  app_.add_flag("--json", wishes_.json, "Print JSON, for scripts");
  app_.add_flag("--reveal", wishes_.reveal, "Show the values of \"pwd\" leaves");
  addLeafCommands();
  addObjectCommands();
  addStreamCommands();
  addContextCommands();
  addFileCommands();
  addInspect();
  addCompletion();
}

void CommandLine::addCount(CLI::App* command, const std::string& what) {
  command->add_option("--count", arguments_.count, "End after so many " + what)
      ->type_name("N")
      ->check(isPositive());
}

void CommandLine::addLeafCommands() {
  CLI::App* get = add(app_, "get", "Print the values of leaves, a line each",
                      "  contextctl get Device.Hostname Device.Mtu",
                      [this](const Session& session) { getValues(session, arguments_.words); });
  addArgument(get, "LEAF", arguments_.words, "Full name of a leaf")->required();

  CLI::App* set = add(app_, "set", "Give a leaf a value",
                      "  contextctl set Device.Hostname router\n  contextctl set Device.Note -- --none--",
                      [this](const Session& session) {
                        setValue(session, arguments_.leaf, arguments_.value, arguments_.create);
                      });
  addArgument(set, "LEAF", arguments_.leaf, "Full name of the leaf")->required();
  addArgument(set, "VALUE", arguments_.value, "Its new value")->required();
  set->add_flag("--create", arguments_.create, "Make the leaf's instance, if it is not there");

  CLI::App* list =
      add(app_, "list", "List leaves with their types and values", "  contextctl list Device.Interfaces.",
          [this](const Session& session) { listLeaves(session, arguments_.prefix); });
  addArgument(list, "PREFIX", arguments_.prefix, "What their names begin with");

  CLI::App* tree =
      add(app_, "tree", "Show leaves as an indented tree", "  contextctl tree Device.Interfaces.",
          [this](const Session& session) { showTree(session, arguments_.prefix); });
  addArgument(tree, "PREFIX", arguments_.prefix, "What their names begin with");
}

void CommandLine::addObjectCommands() {
  CLI::App* instances =
      add(app_, "instances", "List the instances of an object", "  contextctl instances Device.Interfaces.",
          [this](const Session& session) { listInstances(session, arguments_.object); });
  addArgument(instances, "OBJECT", arguments_.object, "Name or number of the object")->required();

  CLI::App* added = add(app_, "add", "Add an instance", "  contextctl add Device.Interfaces.wlan0.",
                        [this](const Session& session) { addInstance(session, arguments_.instance); });
  addArgument(added, "INSTANCE", arguments_.instance, "Full name of the instance")->required();

  CLI::App* deleted = add(app_, "del", "Delete an instance", "  contextctl del Device.Interfaces.wlan0.",
                          [this](const Session& session) { deleteInstance(session, arguments_.instance); });
  addArgument(deleted, "INSTANCE", arguments_.instance, "Full name of the instance")->required();

  CLI::App* attribute = add(app_, "attribute", "Print or set the attribute of an object",
                            "  contextctl attribute Device.Interfaces.\n  contextctl attribute 100 3",
                            [this](const Session& session) {
                              if (app_.get_subcommand("attribute")->count("ATTRIBUTE") == 0) {
                                showAttribute(session, arguments_.object);
                              } else {
                                setAttribute(session, arguments_.object, arguments_.attribute);
                              }
                            });
  addArgument(attribute, "OBJECT", arguments_.object, "Name or number of the object")->required();
  addArgument(attribute, "ATTRIBUTE", arguments_.attribute, "Its new attribute, a number");
}

void CommandLine::addStreamCommands() {
  CLI::App* watch =
      add(app_, "watch", "Follow the changes of the tree",
          "  contextctl watch Device.Interfaces.\n  contextctl watch --count 1",
          [this](const Session& session) { watchChanges(session, arguments_.prefix, arguments_.count); });
  addArgument(watch, "PREFIX", arguments_.prefix, "What the names begin with");
  addCount(watch, "changes");

  CLI::App* event = app_.add_subcommand("event", "Send or follow events");
  event->fallthrough();
  CLI::App* send =
      add(*event, "send", "Send an event", "  contextctl event send link.down eth0",
          [this](const Session& session) { sendEvent(session, arguments_.event, arguments_.data); });
  addArgument(send, "EVENT", arguments_.event, "Name of the event")->required();
  addArgument(send, "DATA", arguments_.data, "What it carries")->required();

  CLI::App* follow =
      add(*event, "follow", "Follow events", "  contextctl event follow link.down --count 1",
          [this](const Session& session) { followEvents(session, arguments_.event, arguments_.count); });
  addArgument(follow, "EVENT", arguments_.event, "Name of the events; all, if it is left out");
  addCount(follow, "events");

  CLI::App* log = add(app_, "log", "Follow the log", "  contextctl log --json | jq .text",
                      [this](const Session& session) { followLog(session, arguments_.count); });
  addCount(log, "records");
}

void CommandLine::addContextCommands() {
  add(app_, "save", "Save the configuration", "  contextctl save", save);
  add(app_, "stop", "End the context's program in good order", "  contextctl stop", stop);
  add(app_, "modules", "List the module libraries and how far they are", "  contextctl modules", listModules);
  add(app_, "registrations", "List what is registered, and what its callbacks cost",
      "  contextctl registrations", listRegistrations);

  CLI::App* stats = add(app_, "stats", "Show the context's figures",
                        "  contextctl stats\n  contextctl stats --trace trace.json",
                        [this](const Session& session) { showStatistics(session, arguments_.file); });
  stats->add_option("--trace", arguments_.file, "Write a trace of the latest callbacks, for a trace viewer")
      ->type_name("FILE");

  CLI::App* top =
      add(app_, "top", "Show again and again what the callbacks cost",
          "  contextctl top --interval 1\n  contextctl top --count 1",
          [this](const Session& session) { showTop(session, arguments_.interval, arguments_.count); });
  top->add_option("--interval", arguments_.interval, "Seconds from one sample to the next (2)")
      ->type_name("S")
      ->check(isPositive());
  addCount(top, "samples");
}

void CommandLine::addFileCommands() {
  CLI::App* to =
      add(app_, "export", "Write leaves to a file, without passwords and computed values",
          "  contextctl export > all.json\n  contextctl export Device.Interfaces. interfaces.json",
          [this](const Session& session) { exportTree(session, arguments_.prefix, arguments_.file); });
  addArgument(to, "PREFIX", arguments_.prefix, "What their names begin with; \"\" for all");
  addArgument(to, "FILE", arguments_.file, "The file; standard output, if it is left out");

  CLI::App* from =
      add(app_, "import", "Set what differs from a file, and tell it", "  contextctl import all.json",
          [this](const Session& session) { return importTree(session, arguments_.file); });
  addArgument(from, "FILE", arguments_.file, "An exported file; \"-\" for standard input")->required();

  CLI::App* diff = add(app_, "diff", "Tell what differs from a file", "  contextctl diff all.json",
                       [this](const Session& session) { return diffTree(session, arguments_.file); });
  addArgument(diff, "FILE", arguments_.file, "An exported file; \"-\" for standard input")->required();
}

void CommandLine::addInspect() {
  InspectOptions& options = arguments_.inspect;
  CLI::App* command = add(app_, "inspect", "Tell whether a context or module library fits libcpp2c",
                          "  contextctl inspect libcontext_proxy.so\n"
                          "  contextctl inspect --live --kind module ./libmodule.so\n"
                          "  contextctl inspect --against mips/libcpp2c.so --sysroot mips/root libmodule.so",
                          [this](const Session& session) { return inspectLibrary(session); });
  addArgument(command, "LIBRARY", options.library, "The library file")->required();
  command->add_option("--against", options.against, "The libcpp2c.so to fit; by default the one found here")
      ->type_name("LIBRARY");
  command->add_option("--library-path", options.library_path, "Folders to look for libraries in first")
      ->type_name("FOLDER:...");
  command->add_option("--sysroot", options.sysroot, "Where another machine's folders stand")
      ->type_name("FOLDER");
  command->add_option("--kind", arguments_.kind, "What the library is; a context, if it is left out")
      ->type_name("context|module")
      ->check(isOneOf({"context", "module"}));
  command->add_flag("--live", options.live, "Open it in a process of its own, and list its operations");
}

ExitStatus CommandLine::inspectLibrary(const Session& session) {
  arguments_.inspect.kind = arguments_.kind == "module" ? Kind::kModule : Kind::kContext;
  arguments_.inspect.seconds = wishes_.seconds;
  const Report report = inspect(arguments_.inspect);
  (session.json() ? printJson : print)(report, session.out());
  return fits(report) ? kExitOk : kExitNo;
}

void CommandLine::addCompletion() {
  CLI::App* completion =
      add(app_, "completion", "Print what makes a shell complete the words of contextctl",
          "  source <(contextctl completion bash)\n  contextctl completion fish | source",
          [this](const Session& session) { session.out() << completionScript(arguments_.shell); });
  addArgument(completion, "SHELL", arguments_.shell, "The shell")
      ->type_name("bash|zsh|fish")
      ->required()
      ->check(isOneOf({"bash", "zsh", "fish"}));

  // For the scripts alone, so the help does not show it.
  CLI::App* complete =
      add(app_, "complete", "", "", [this](const Session& session) { return completeWords(session); });
  complete->group("");
  addArgument(complete, "WORD", arguments_.words, "The words of a line behind contextctl");
}

ExitStatus CommandLine::completeWords(const Session& session) {
  const auto candidates = findCandidates(app_, arguments_.words);
  if (!candidates) return kExitNo;
  for (const std::string& candidate : *candidates) session.out() << candidate << '\n';
  return kExitOk;
}

ExitStatus CommandLine::run(int argc, const char* const* argv) {
  try {
    app_.parse(argc, argv);
  } catch (const CLI::Success& wish) {
    app_.exit(wish);
    return kExitOk;
  } catch (const CLI::ParseError& error) {
    throw Failure(kExitUsage, error.what());
  }
  if (!action_) throw Failure(kExitUsage, "no command; try --help");
  const Session session(wishes_, std::cout);
  return action_(session);
}

}  // namespace

ExitStatus runCommandLine(int argc, const char* const* argv) {
  const ExitStatus status = CommandLine().run(argc, argv);
  flush(std::cout);
  return status;
}

}  // namespace contextctl
