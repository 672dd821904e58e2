// SPDX-License-Identifier: MIT
#include <unistd.h>

#include <algorithm>
#include <map>
#include <ostream>

#include "contextctl/commands/commands.h"
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
  Cost recent;  // since the sample before
};

// Remembers from sample to sample what each registration had cost.
class Sampler {
 public:
  std::vector<Line> update(const std::vector<Record>& registrations);

 private:
  std::map<std::string, Cost> before_;
};

// The parts are parted by what no text of a registration holds.
std::string identityOf(const Record& r) {
  return r.text("kind") + '\n' + r.text("key") + '\n' + r.text("function") + '\n' + r.text("since");
}

std::vector<Line> Sampler::update(const std::vector<Record>& registrations) {
  std::vector<Line> lines;
  std::map<std::string, Cost> now;
  for (const Record& registration : registrations) {
    const Cost cost{registration.number("count"), registration.number("totalMs")};
    const Cost& before = before_[identityOf(registration)];
    now[identityOf(registration)] = cost;
    lines.push_back({registration, {cost.count - before.count, cost.total_ms - before.total_ms}});
  }
  before_ = std::move(now);
  std::stable_sort(lines.begin(), lines.end(),
                   [](const Line& a, const Line& b) { return a.recent.total_ms > b.recent.total_ms; });
  return lines;
}

void printSample(const Session& session, const Record& statistics, const std::vector<Line>& lines) {
  std::ostream& out = session.out();
  out << util::printable(statistics.text("program")) << " (" << statistics.text("pid") << "), running for "
      << uptime(statistics.number("uptimeMs")) << ", " << statistics.text("callbacks")
      << " callbacks, busy for " << milliseconds(statistics.number("busyMs")) << " ms\n";
  Table table({"RECENT MS", "RECENT COUNT", "TOTAL MS", "COUNT", "LONGEST MS", "KIND", "KEY", "FUNCTION"});
  for (const Line& line : lines) {
    const Record& r = line.registration;
    table.add({milliseconds(line.recent.total_ms), std::to_string(static_cast<long long>(line.recent.count)),
               milliseconds(r.number("totalMs")), r.text("count"), milliseconds(r.number("longestMs")),
               r.text("kind"), r.text("key"), r.text("function")});
  }
  table.print(out);
}

// A terminal shows one sample in place of the other, a file holds them one below the other.
void separate(const Session& session, bool first) {
  if (session.json()) return;
  if (isatty(STDOUT_FILENO) == 1) {
    session.out() << "\033[H\033[2J";
  } else if (!first) {
    session.out() << '\n';
  }
}

}  // namespace

void showTop(const Session& session, double interval, int count) {
  const Interrupt interrupt;
  Sampler sampler;
  for (int i = 0; count == 0 || i < count; i++) {
    if (i > 0 && interrupt.wait(interval)) return;
    const Answer statistics = session.get("/statistics"), registrations = session.get("/registrations");
    separate(session, i == 0);
    if (session.json()) {
      session.out() << "{\"statistics\":" << statistics.json << ',' << registrations.json.substr(1) << '\n';
    } else {
      printSample(session, statistics.record, sampler.update(registrations.list("registrations")));
    }
    flush(session.out());
  }
}

}  // namespace contextctl
