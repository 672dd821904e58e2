// SPDX-License-Identifier: MIT
// Everything that the command line understands. A command's options live in shared values, which its action
// reads once the whole line has been parsed.
#include "contextctl/command_line.h"

#include <functional>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "contextctl/commands/commands.h"
#include "contextctl/inspect/inspect.h"
#include "contextctl/session.h"

namespace {

using Action = std::function<ExitStatus(const Session& session)>;

class CommandLine {
 public:
  CommandLine();

  ExitStatus run(int argc, const char* const* argv);

 private:
  void addLeafCommands();
  void addObjectCommands();
  void addStreamCommands();
  void addContextCommands();
  void addFileCommands();
  void addInspect();
  CLI::App* add(CLI::App& parent, const std::string& name, const std::string& purpose,
                const std::string& examples, Action action);
  CLI::App* add(const std::string& name, const std::string& purpose, const std::string& examples,
                Action action) {
    return add(app_, name, purpose, examples, std::move(action));
  }

  CLI::App app_;
  Session::Wishes wishes_;
  Action action_;
};

// An argument's place; shared, since actions are copied.
template <typename T>
std::shared_ptr<T> place(T value = {}) {
  return std::make_shared<T>(std::move(value));
}

// An action without a result of its own.
template <typename Command>
Action always(Command command) {
  return [command](const Session& session) {
    command(session);
    return kExitOk;
  };
}

CLI::Validator isPositive() {
  const auto check = [](const std::string& text) {
    double number = 0;
    const bool good = CLI::detail::lexical_cast(text, number) && number > 0;
    return good ? std::string() : text + " is no number above 0";
  };
  return CLI::Validator(check, "");
}

std::shared_ptr<int> addCount(CLI::App* command) {
  auto count = place(0);
  command->add_option("--count", *count, "End after so many items")->check(isPositive());
  return count;
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
}

CLI::App* CommandLine::add(CLI::App& parent, const std::string& name, const std::string& purpose,
                           const std::string& examples, Action action) {
  CLI::App* command = parent.add_subcommand(name, purpose);
  command->footer("Examples:\n" + examples);
  command->callback([this, action = std::move(action)] { action_ = action; });
  return command;
}

void CommandLine::addLeafCommands() {
  auto names = place<std::vector<std::string>>();
  add("get", "Print the values of leaves, a line each", "  contextctl get Device.Hostname Device.Mtu",
      always([names](const Session& session) { getValues(session, *names); }))
      ->add_option("NAME", *names, "Full name of a leaf")
      ->required();

  auto name = place<std::string>(), value = place<std::string>();
  auto create = place(false);
  CLI::App* set = add("set", "Give a leaf a value",
                      "  contextctl set Device.Hostname router\n  contextctl set Device.Note -- --none--",
                      always([=](const Session& session) { setValue(session, *name, *value, *create); }));
  set->add_option("NAME", *name, "Full name of the leaf")->required();
  set->add_option("VALUE", *value, "Its new value")->required();
  set->add_flag("--create", *create, "Make the instance that the leaf belongs to, if it is not there");

  auto list_prefix = place<std::string>();
  auto names_only = place(false);
  CLI::App* list =
      add("list", "List leaves with their types and values",
          "  contextctl list Device.Interfaces.\n  contextctl list --names",
          always([=](const Session& session) { listLeaves(session, *list_prefix, *names_only); }));
  list->add_option("PREFIX", *list_prefix, "What their names begin with");
  list->add_flag("--names", *names_only, "Print the names only");

  auto tree_prefix = place<std::string>();
  add("tree", "Show leaves as an indented tree", "  contextctl tree Device.Interfaces.",
      always([tree_prefix](const Session& session) { showTree(session, *tree_prefix); }))
      ->add_option("PREFIX", *tree_prefix, "What their names begin with");
}

void CommandLine::addObjectCommands() {
  auto object = place<std::string>();
  add("instances", "List the instances of an object", "  contextctl instances Device.Interfaces.",
      always([object](const Session& session) { listInstances(session, *object); }))
      ->add_option("OBJECT", *object, "Name or number of the object")
      ->required();

  auto added = place<std::string>();
  add("add", "Add an instance", "  contextctl add Device.Interfaces.wlan0.",
      always([added](const Session& session) { addInstance(session, *added); }))
      ->add_option("INSTANCE", *added, "Full name of the instance")
      ->required();

  auto deleted = place<std::string>();
  add("del", "Delete an instance", "  contextctl del Device.Interfaces.wlan0.",
      always([deleted](const Session& session) { deleteInstance(session, *deleted); }))
      ->add_option("INSTANCE", *deleted, "Full name of the instance")
      ->required();

  auto owner = place<std::string>();
  auto value = place(0);
  CLI::App* attr = add("attr", "Print or set the attribute of an object",
                       "  contextctl attr Device.Interfaces.\n  contextctl attr 100 3", nullptr);
  attr->add_option("OBJECT", *owner, "Name or number of the object")->required();
  const CLI::Option* new_value = attr->add_option("VALUE", *value, "Its new attribute");
  attr->callback([this, owner, value, new_value] {
    action_ = always([=](const Session& session) {
      if (new_value->count() == 0)
        showAttribute(session, *owner);
      else
        setAttribute(session, *owner, *value);
    });
  });
}

void CommandLine::addStreamCommands() {
  auto prefix = place<std::string>();
  auto watch_count = place<std::shared_ptr<int>>();
  CLI::App* watch =
      add("watch", "Follow the changes of the tree",
          "  contextctl watch Device.Interfaces.\n  contextctl watch --count 1",
          always([=](const Session& session) { watchChanges(session, *prefix, **watch_count); }));
  watch->add_option("PREFIX", *prefix, "What the names begin with");
  *watch_count = addCount(watch);

  CLI::App* event = app_.add_subcommand("event", "Send or follow events");
  event->fallthrough();
  auto sent = place<std::string>(), data = place<std::string>();
  CLI::App* send = add(*event, "send", "Send an event", "  contextctl event send link.down eth0",
                       always([=](const Session& session) { sendEvent(session, *sent, *data); }));
  send->add_option("NAME", *sent, "Name of the event")->required();
  send->add_option("DATA", *data, "What it carries")->required();

  auto followed = place<std::string>();
  auto event_count = place<std::shared_ptr<int>>();
  CLI::App* follow =
      add(*event, "follow", "Follow events", "  contextctl event follow link.down --count 1",
          always([=](const Session& session) { followEvents(session, *followed, **event_count); }));
  follow->add_option("NAME", *followed, "Name of the events; all, if it is left out");
  *event_count = addCount(follow);

  auto log_count = place<std::shared_ptr<int>>();
  CLI::App* log = add("log", "Follow the log", "  contextctl log --json | jq .text",
                      always([=](const Session& session) { followLog(session, **log_count); }));
  *log_count = addCount(log);
}

void CommandLine::addContextCommands() {
  add("save", "Save the configuration", "  contextctl save", always(save));
  add("stop", "End the context's program in good order", "  contextctl stop", always(stop));
  add("modules", "List the module libraries and how far they are", "  contextctl modules",
      always(listModules));
  add("registrations", "List what is registered, and what its callbacks cost", "  contextctl registrations",
      always(listRegistrations));

  auto trace = place<std::string>();
  add("stats", "Show the context's figures", "  contextctl stats\n  contextctl stats --trace trace.json",
      always([trace](const Session& session) { showStatistics(session, *trace); }))
      ->add_option("--trace", *trace, "Write a trace of the latest callbacks, for a trace viewer")
      ->type_name("FILE");

  auto interval = place(2.0);
  auto count = place(0);
  CLI::App* top = add("top", "Show again and again what the callbacks cost",
                      "  contextctl top --interval 1\n  contextctl top --count 1",
                      always([=](const Session& session) { showTop(session, *interval, *count); }));
  top->add_option("--interval", *interval, "Seconds from one sample to the next (2)")
      ->type_name("S")
      ->check(isPositive());
  top->add_option("--count", *count, "End after so many samples")->check(isPositive());
}

void CommandLine::addFileCommands() {
  auto prefix = place<std::string>(), target = place<std::string>();
  CLI::App* to = add("export", "Write leaves to a file, without passwords and computed values",
                     "  contextctl export > all.json\n  contextctl export Device.Interfaces. interfaces.json",
                     always([=](const Session& session) { exportTree(session, *prefix, *target); }));
  to->add_option("PREFIX", *prefix, "What their names begin with; \"\" for all");
  to->add_option("FILE", *target, "The file; standard output, if it is left out");

  auto source = place<std::string>();
  add("import", "Set what differs from a file, and tell it", "  contextctl import all.json",
      [source](const Session& session) { return importTree(session, *source); })
      ->add_option("FILE", *source, "An exported file; \"-\" for standard input")
      ->required();

  auto other = place<std::string>();
  add("diff", "Tell what differs from a file", "  contextctl diff all.json",
      [other](const Session& session) { return diffTree(session, *other); })
      ->add_option("FILE", *other, "An exported file; \"-\" for standard input")
      ->required();
}

void CommandLine::addInspect() {
  auto options = place<InspectOptions>();
  auto kind = place<std::string>("context");
  CLI::App* command = add("inspect", "Tell whether a context or module library fits libcpp2c",
                          "  contextctl inspect libcontext_proxy.so\n"
                          "  contextctl inspect --live --kind module ./libmodule.so\n"
                          "  contextctl inspect --against mips/libcpp2c.so --sysroot mips/root libmodule.so",
                          [this, options, kind](const Session& session) {
                            options->kind = *kind == "module" ? Kind::kModule : Kind::kContext;
                            options->seconds = wishes_.seconds;
                            const Report report = inspect(*options);
                            (session.json() ? printJson : print)(report, session.out());
                            return fits(report) ? kExitOk : kExitNo;
                          });
  command->add_option("LIBRARY", options->library, "The library file")->required();
  command->add_option("--against", options->against, "The libcpp2c.so to fit; by default the one found here")
      ->type_name("LIBRARY");
  command->add_option("--library-path", options->library_path, "Folders to look for libraries in first")
      ->type_name("FOLDER:...");
  command->add_option("--sysroot", options->sysroot, "Where another machine's folders stand")
      ->type_name("FOLDER");
  command->add_option("--kind", *kind, "What the library is; a context, if it is left out")
      ->check(CLI::IsMember({"context", "module"}));
  command->add_flag("--live", options->live, "Open it in a process of its own, and list its operations");
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
