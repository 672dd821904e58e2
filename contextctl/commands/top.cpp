// SPDX-License-Identifier: MIT
#include "contextctl/commands/commands.h"

#include <unistd.h>

#include <algorithm>
#include <map>
#include <memory>
#include <ostream>

#include "contextctl/commands/command_set.h"
#include "contextctl/output/durations.h"
#include "contextctl/output/table.h"
#include "contextctl/system/interrupt.h"
#include "util/text.h"

namespace contextctl {
namespace {

struct Cost {
  double count = 0;
  double total_ms = 0;
};

struct Line {
  Record registration;
  Cost recent;  // since the previous sample
};

// Computes what each registration has cost since the previous sample.
class Sampler {
 public:
  std::vector<Line> update(const std::vector<Record>& registrations);

 private:
  std::map<std::string, Cost> previous_;
};

// The separator occurs in no text of a registration.
std::string identityOf(const Record& r) {
  return r.text("kind") + '\n' + r.text("key") + '\n' + r.text("function") + '\n' + r.text("since");
}

std::vector<Line> Sampler::update(const std::vector<Record>& registrations) {
  std::vector<Line> lines;
  std::map<std::string, Cost> now;
  for (const Record& registration : registrations) {
    const Cost cost{registration.number("count"), registration.number("totalMs")};
    const Cost& previous = previous_[identityOf(registration)];
    now[identityOf(registration)] = cost;
    lines.push_back({registration, {cost.count - previous.count, cost.total_ms - previous.total_ms}});
  }
  previous_ = std::move(now);
  std::stable_sort(lines.begin(), lines.end(),
                   [](const Line& a, const Line& b) { return a.recent.total_ms > b.recent.total_ms; });
  return lines;
}

void printSample(const Session& session, const Record& statistics, const std::vector<Line>& lines) {
  std::ostream& out = session.out();
  out << util::printable(statistics.text("program")) << " (" << util::printable(statistics.text("pid"))
      << "), running for " << uptimeText(statistics.number("uptimeMs")) << ", "
      << util::printable(statistics.text("calls")) << " calls, busy for "
      << millisecondsText(statistics.number("busyMs")) << " ms\n";
  Table table({"RECENT MS", "RECENT COUNT", "TOTAL MS", "COUNT", "LONGEST MS", "KIND", "KEY", "FUNCTION"});
  for (const Line& line : lines) {
    const Record& r = line.registration;
    table.add({millisecondsText(line.recent.total_ms),
               std::to_string(static_cast<long long>(line.recent.count)),
               millisecondsText(r.number("totalMs")), r.text("count"),
               millisecondsText(r.number("longestMs")), r.text("kind"), r.text("key"), r.text("function")});
  }
  table.print(out);
}

// On a terminal, each sample replaces the previous one; in a file, they follow each other.
void separate(const Session& session, bool first) {
  if (session.json()) return;
  if (isatty(STDOUT_FILENO) == 1) {
    session.out() << "\033[H\033[2J";
  } else if (!first) {
    session.out() << '\n';
  }
}

void showTop(const Session& session, double interval, int count) {
  const Interrupt interrupt;
  Sampler sampler;
  for (int i = 0; count == 0 || i < count; i++) {
    if (i > 0 && interrupt.wait(interval)) return;
    const Answer statistics = session.connection().get("/statistics");
    const Answer registrations = session.connection().get("/registrations");
    separate(session, i == 0);
    if (session.json()) {
      session.out() << "{\"statistics\":" << statistics.json << ',' << registrations.json.substr(1) << '\n';
    } else {
      printSample(session, statistics.record, sampler.update(registrations.objectArray("registrations")));
    }
    flush(session.out());
  }
}

}  // namespace

void addTopCommand(CommandSet& commands) {
  struct Arguments {
    double interval = 2;
    int count = 0;
  };
  const auto arguments = std::make_shared<Arguments>();
  commands
      .add("top", "Show periodically which calls take most time",
           "  contextctl top --interval 1\n  contextctl top --count 1",
           [=](const Session& session) { showTop(session, arguments->interval, arguments->count); })
      .seconds("--interval", arguments->interval, "Seconds between two samples; default: 2")
      .count(arguments->count, "samples");
}

}  // namespace contextctl
