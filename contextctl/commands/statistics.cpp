// SPDX-License-Identifier: MIT
// stats.
#include <ostream>

#include "contextctl/commands/commands.h"
#include "contextctl/output/durations.h"
#include "contextctl/output/table.h"
#include "contextctl/system/files.h"

namespace contextctl {
namespace {

void printStatistics(const Record& statistics, std::ostream& out) {
  Table table({"FIGURE", "VALUE"});
  table.add({"program", statistics.text("program")});
  table.add({"process", statistics.text("pid")});
  table.add({"running for", uptime(statistics.number("uptimeMs"))});
  table.add({"clock", statistics.text("clock")});
  table.add({"callbacks", statistics.text("callbacks")});
  table.add({"busy ms", milliseconds(statistics.number("busyMs"))});
  table.add({"longest ms", milliseconds(statistics.number("longestMs"))});
  table.add({"events", statistics.text("events")});
  table.add({"changes", statistics.text("changes")});
  table.add({"clients", statistics.text("clients")});
  table.print(out);
}

}  // namespace

void showStatistics(const Session& session, const std::string& trace_file) {
  const Answer answer = session.get("/statistics");
  session.show(answer, [&](std::ostream& out) { printStatistics(answer.record, out); });
  if (!trace_file.empty()) writeFile(trace_file, session.getText("/trace"));
}

}  // namespace contextctl
