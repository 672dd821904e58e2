// SPDX-License-Identifier: MIT
#include "contextctl/commands/commands.h"

#include <memory>
#include <ostream>

#include "contextctl/commands/command_set.h"
#include "contextctl/connection/unix_socket.h"
#include "contextctl/output/durations.h"
#include "contextctl/output/table.h"
#include "contextctl/system/files.h"
#include "util/text.h"

namespace contextctl {
namespace {

void save(const Session& session) {
  session.show(session.connection().post("/save", {}));
}

void stop(const Session& session, bool wait) {
  const Listener program(session.socket());
  session.show(session.connection().post("/stop", {}));
  if (wait) program.waitForEnd(session.seconds());
}

void listModules(const Session& session) {
  const Answer answer = session.connection().get("/modules");
  session.show(answer, [&](std::ostream& out) {
    out << "State: " << util::printable(answer.record.text("state")) << '\n';
    Table table({"LIBRARY", "STATE"});
    for (const Record& module : answer.objectArray("modules"))
      table.add({module.text("library"), module.text("state")});
    table.print(out);
  });
}

void listRegistrations(const Session& session) {
  const Answer answer = session.connection().get("/registrations");
  session.show(answer, [&](std::ostream& out) {
    Table table(
        {"KIND", "KEY", "FUNCTION", "LOCATION", "COUNT", "TOTAL MS", "LONGEST MS", "LAST MS", "RESULT"});
    for (const Record& r : answer.objectArray("registrations")) {
      table.add({r.text("kind"), r.text("key"), r.text("function"), r.text("location"), r.text("count"),
                 millisecondsText(r.number("totalMs")), millisecondsText(r.number("longestMs")),
                 millisecondsText(r.number("lastMs")), r.text("lastResult")});
    }
    table.print(out);
  });
}

void printStatistics(const Record& statistics, std::ostream& out) {
  Table table({"FIGURE", "VALUE"});
  table.add({"program", statistics.text("program")});
  table.add({"process", statistics.text("pid")});
  table.add({"running for", uptimeText(statistics.number("uptimeMs"))});
  table.add({"clock", statistics.text("clock")});
  table.add({"calls", statistics.text("calls")});
  table.add({"busy ms", millisecondsText(statistics.number("busyMs"))});
  table.add({"longest ms", millisecondsText(statistics.number("longestMs"))});
  table.add({"events", statistics.text("events")});
  table.add({"changes", statistics.text("changes")});
  table.add({"clients", statistics.text("clients")});
  table.print(out);
}

void showStatistics(const Session& session, const std::string& trace_file) {
  const Answer answer = session.connection().get("/statistics");
  session.show(answer, [&](std::ostream& out) { printStatistics(answer.record, out); });
  if (!trace_file.empty()) writeFile(trace_file, session.connection().getText("/trace"));
}

void addStop(CommandSet& commands) {
  const auto no_wait = std::make_shared<bool>(false);
  commands
      .add(commands.app(), "stop", "End the program of the context, and wait for its end",
           "  contextctl stop\n  contextctl stop --no-wait",
           [=](const Session& session) { stop(session, !*no_wait); })
      ->add_flag("--no-wait", *no_wait, "Do not wait for the end of the program");
}

void addStatistics(CommandSet& commands) {
  const auto trace_file = std::make_shared<std::string>();
  CLI::App* stats = commands.add(commands.app(), "stats", "Show statistics of the context",
                                 "  contextctl stats\n  contextctl stats --trace trace.json",
                                 [=](const Session& session) { showStatistics(session, *trace_file); });
  stats->add_option("--trace", *trace_file, "Write a trace of the latest calls, for a trace viewer")
      ->type_name("FILE");
}

}  // namespace

void addContextCommands(CommandSet& commands) {
  commands.add(commands.app(), "save", "Save the configuration", "  contextctl save", save);
  addStop(commands);
  commands.add(commands.app(), "modules", "List the module libraries and their states",
               "  contextctl modules", listModules);
  commands.add(commands.app(), "registrations", "List registrations with the durations of their calls",
               "  contextctl registrations", listRegistrations);
  addStatistics(commands);
}

}  // namespace contextctl
