// SPDX-License-Identifier: MIT
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>
#include <utility>

#include "tests/faults/configuration.h"
#include "tests/faults/subject.h"

namespace faults {
namespace {

using Lines = std::vector<std::string>;

bool startsWith(const std::string& text, const std::string& prefix) {
  return text.compare(0, prefix.size(), prefix) == 0;
}

// The lines of `some` that are not in `others`.
Lines without(Lines some, Lines others) {
  std::sort(some.begin(), some.end());
  std::sort(others.begin(), others.end());
  Lines rest;
  std::set_difference(some.begin(), some.end(), others.begin(), others.end(), std::back_inserter(rest));
  return rest;
}

// A line of the log without its time.
Lines logLines(const std::string& file) {
  constexpr std::size_t kTime = sizeof "2026-01-31 12:00:00.250 " - 1;
  Lines lines;
  for (const std::string& line : readLines(file)) lines.push_back(line.substr(std::min(kTime, line.size())));
  return lines;
}

struct Results {
  Lines report;
  Lines log;
  Lines errors;  // on standard error
};

// The counters that a saved state may have: the last one reported as saved, or a later one.
std::set<std::string> savedCounters(const Lines& report) {
  std::set<std::string> counters = {"0"};
  std::string latest = "0";
  for (const std::string& line : report) {
    if (startsWith(line, "saving ")) counters.insert(latest = line.substr(7));
    if (startsWith(line, "saved ")) counters = {latest};
  }
  return counters;
}

// The level and the module of each line. The text may name a function by its library only, if its debug
// information cannot be read.
Lines modules(Lines lines) {
  for (std::string& line : lines) line.erase(std::min(line.find(':'), line.size()));
  return lines;
}

bool isFailure(const std::string& line) {
  const std::string result = line.substr(line.rfind(' ') + 1);
  return startsWith(result, "-") || result == "bad_alloc" || result == "failed" || startsWith(line, "reply ");
}

bool isWarning(const std::string& line) {
  return startsWith(line, "warning ") || startsWith(line, "error ") || startsWith(line, "critical ");
}

class Session final : public ISubject {
 public:
  explicit Session(std::string folder) : folder_(std::move(folder)) {}

  std::string name() const override { return "session"; }
  Counts runWithoutFault() override;
  std::string runWith(const Fault& fault) override;
  Counts takeCountsOfLastRun() override { return std::move(counts_); }

 private:
  Command command(const std::string& mode) const;
  Results results() const;
  void clear() const;
  std::string silentDifference(const Results& results) const;
  std::string lostState(const Lines& report) const;

  const std::string folder_;
  Results expected_;
  Counts counts_;
};

Command Session::command(const std::string& mode) const {
  Command command = {SESSION,    mode,         "report", "control", "--config", "config.json", "--state",
                     "state.db", "--log-file", "log",    "--clock", "virtual",  "--debug"};
  if (mode == "run") command.insert(command.end(), {"--control", "control", "--strict"});
  return command;
}

Results Session::results() const {
  return {readLines(folder_ + "/report"), logLines(folder_ + "/log"), readLines(folder_ + "/err")};
}

void Session::clear() const {
  for (const auto& entry : std::filesystem::directory_iterator(folder_))
    std::filesystem::remove(entry.path());
  writeConfiguration(folder_ + "/config.json");
}

Counts Session::runWithoutFault() {
  clear();
  const std::string failure = waitFor(start(command("run"), folder_), 0);
  if (!failure.empty()) throw std::runtime_error("the session without a fault " + failure);
  expected_ = results();
  const std::string lost = lostState(expected_.report);
  if (!lost.empty()) throw std::runtime_error("without a fault: " + lost);
  clear();
  waitFor(start(command("run"), folder_), 0);
  return takeCounts(folder_);
}

std::string Session::runWith(const Fault& fault) {
  clear();
  const std::string failure = waitFor(start(command("run"), folder_, fault), 0);
  counts_ = takeCounts(folder_);
  const Results obtained = results();
  if (!failure.empty()) {
    const std::string last = obtained.report.empty() ? "the start" : '"' + obtained.report.back() + '"';
    const std::string error = obtained.errors.empty() ? "" : "; " + obtained.errors.back();
    return failure + " after " + last + error;
  }
  for (const std::string& line : obtained.report) {
    if (line == "run bad_alloc") return "the loop is ended by an exception";
  }
  const std::string lost = lostState(obtained.report);
  return lost.empty() ? silentDifference(obtained) : lost;
}

std::string Session::lostState(const Lines& report) const {
  const std::set<std::string> allowed = savedCounters(report);
  const std::string failure = waitFor(start(command("check"), folder_), 0);
  if (!failure.empty()) return "the next start " + failure;
  for (const std::string& line : readLines(folder_ + "/report")) {
    if (startsWith(line, "counter ")) {
      const std::string counter = line.substr(8);
      if (allowed.count(counter) == 1) return "";
      return "the saved state has the counter " + counter + " instead of " + *allowed.begin();
    }
  }
  const Lines errors = readLines(folder_ + "/err");
  return "the saved state cannot be opened: " + (errors.empty() ? "no error" : errors.front());
}

std::string Session::silentDifference(const Results& obtained) const {
  const Lines reported = without(obtained.report, expected_.report);
  const Lines unreported = without(expected_.report, obtained.report);
  const Lines logged = without(obtained.log, expected_.log);
  const bool is_reported = std::any_of(reported.begin(), reported.end(), isFailure);
  const bool is_unanswered = std::any_of(unreported.begin(), unreported.end(),
                                         [](const std::string& line) { return startsWith(line, "reply "); });
  const bool is_logged = std::any_of(logged.begin(), logged.end(), isWarning);
  if (is_reported || is_unanswered || is_logged || !obtained.errors.empty()) return "";
  if (!unreported.empty()) return "without a word, no \"" + unreported.front() + '"';
  const Lines unlogged = without(modules(expected_.log), modules(obtained.log));
  if (!unlogged.empty()) return "without a word, not logged: " + unlogged.front();
  return "";
}

}  // namespace

std::unique_ptr<ISubject> session(const std::string& folder) {
  return std::make_unique<Session>(folder);
}

}  // namespace faults
