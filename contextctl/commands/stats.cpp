// SPDX-License-Identifier: MIT
#include "contextctl/commands/commands.h"

#include <memory>
#include <ostream>

#include "contextctl/commands/command_set.h"
#include "contextctl/output/durations.h"
#include "contextctl/output/table.h"
#include "contextctl/system/files.h"

namespace contextctl {
namespace {

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

}  // namespace

void addStatsCommand(CommandSet& commands) {
  const auto trace_file = std::make_shared<std::string>();
  commands
      .add("stats", "Show statistics of the context",
           "  contextctl stats\n  contextctl stats --trace trace.json",
           [=](const Session& session) { showStatistics(session, *trace_file); })
      .option("--trace", "FILE", *trace_file, "Write a trace of the latest calls, for a trace viewer");
}

}  // namespace contextctl
