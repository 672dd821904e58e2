// SPDX-License-Identifier: MIT
// save, stop, modules, registrations.
#include <ostream>

#include "contextctl/commands/commands.h"
#include "contextctl/output/durations.h"
#include "contextctl/output/table.h"
#include "util/text.h"

namespace contextctl {

void save(const Session& session) {
  session.show(session.post("/save", {}));
}

void stop(const Session& session) {
  session.show(session.post("/stop", {}));
}

void listModules(const Session& session) {
  const Answer answer = session.get("/modules");
  session.show(answer, [&](std::ostream& out) {
    out << "State: " << util::printable(answer.record.text("state")) << '\n';
    Table table({"LIBRARY", "STATE"});
    for (const Record& module : answer.list("modules"))
      table.add({module.text("library"), module.text("state")});
    table.print(out);
  });
}

void listRegistrations(const Session& session) {
  const Answer answer = session.get("/registrations");
  session.show(answer, [&](std::ostream& out) {
    Table table(
        {"KIND", "KEY", "FUNCTION", "LOCATION", "COUNT", "TOTAL MS", "LONGEST MS", "LAST MS", "RESULT"});
    for (const Record& r : answer.list("registrations")) {
      table.add({r.text("kind"), r.text("key"), r.text("function"), r.text("location"), r.text("count"),
                 milliseconds(r.number("totalMs")), milliseconds(r.number("longestMs")),
                 milliseconds(r.number("lastMs")), r.text("lastResult")});
    }
    table.print(out);
  });
}

}  // namespace contextctl
