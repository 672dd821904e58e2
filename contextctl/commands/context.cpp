// SPDX-License-Identifier: MIT
#include "contextctl/commands/commands.h"

#include <memory>
#include <ostream>

#include "contextctl/commands/command_set.h"
#include "contextctl/connection/unix_socket.h"
#include "contextctl/output/durations.h"
#include "contextctl/output/table.h"
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

void addStop(CommandSet& commands) {
  const auto no_wait = std::make_shared<bool>(false);
  commands
      .add("stop", "End the program of the context, and wait for its end",
           "  contextctl stop\n  contextctl stop --no-wait",
           [=](const Session& session) { stop(session, !*no_wait); })
      .flag("--no-wait", *no_wait, "Do not wait for the end of the program");
}

}  // namespace

void addContextCommands(CommandSet& commands) {
  commands.add("save", "Save the configuration", "  contextctl save", save);
  addStop(commands);
  commands.add("modules", "List the module libraries and their states", "  contextctl modules", listModules);
  commands.add("registrations", "List registrations with the durations of their calls",
               "  contextctl registrations", listRegistrations);
}

}  // namespace contextctl
