// SPDX-License-Identifier: MIT
#include "contextctl/inspect/live.h"

#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <sstream>

#include "contextctl/inspect/live_child.h"
#include "contextctl/output/durations.h"
#include "contextctl/system/deadline.h"
#include "contextctl/system/failure.h"

namespace contextctl {
namespace {

// The report of the child.
struct Visit {
  std::string step;   // the last one
  std::string error;  // empty: none
  bool done = false;
  std::vector<std::vector<std::string>> slots;  // names of each function; none: no code
};

class Child {
 public:
  Child(const std::string& path, const std::vector<Dependency>& dependencies, size_t positions);
  ~Child() {
    stop();
    close(pipe_);
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  // Reads everything that it writes. Returns false if it still runs after `seconds`.
  bool read(double seconds, std::string& text);

  // Ends it if it still runs. Returns its wait status.
  int stop();

 private:
  pid_t process_ = -1;
  int pipe_ = -1;
  int status_ = 0;
};

Child::Child(const std::string& path, const std::vector<Dependency>& dependencies, size_t positions) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw Failure(kExitNoAnswer, std::string("pipe: ") + strerror(errno));
  std::fflush(nullptr);  // buffered output must not be written by both processes
  process_ = fork();
  if (process_ == 0) runLiveChild(ends[1], path, dependencies, positions);
  close(ends[1]);
  pipe_ = ends[0];
  if (process_ == -1) throw Failure(kExitNoAnswer, std::string("fork: ") + strerror(errno));
}

bool Child::read(double seconds, std::string& text) {
  const Deadline deadline(seconds);
  char buffer[4096];
  for (;;) {
    pollfd watch = {pipe_, POLLIN, 0};
    if (poll(&watch, 1, deadline.millisecondsLeft()) != 1) {
      if (deadline.millisecondsLeft() == 0) return false;
      continue;
    }
    const ssize_t size = ::read(pipe_, buffer, sizeof buffer);
    if (size == 0) return true;
    if (size > 0) text.append(buffer, static_cast<size_t>(size));
  }
}

int Child::stop() {
  if (process_ <= 0) return status_;
  kill(process_, SIGKILL);  // has no effect if it has ended
  waitpid(process_, &status_, 0);
  process_ = -1;
  return status_;
}

std::vector<std::string> splitAtTabs(const std::string& line) {
  std::vector<std::string> parts;
  std::istringstream stream(line);
  for (std::string part; std::getline(stream, part, '\t');) parts.push_back(part);
  return parts;
}

Visit readVisit(const std::string& text) {
  Visit visit;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    std::vector<std::string> parts = splitAtTabs(line);
    const std::string word = parts[0], rest = parts.size() > 1 ? parts[1] : "";
    if (word == "done") visit.done = true;
    if (word == "step") visit.step = rest;
    if (word == "error") visit.error = rest;
    if (word != "slot") continue;
    parts.erase(parts.begin());
    visit.slots.push_back(std::move(parts));
  }
  return visit;
}

std::string describeEnd(int status) {
  if (WIFSIGNALED(status)) return std::string("ended the process: ") + strsignal(WTERMSIG(status));
  return "ended the process with status " + std::to_string(WEXITSTATUS(status));
}

Visit visitLibrary(const std::string& library, const std::vector<Dependency>& dependencies, size_t positions,
                   double seconds) {
  Child child(std::filesystem::absolute(library), dependencies, positions);
  std::string text;
  const bool ended = child.read(seconds, text);
  const int status = child.stop();
  Visit visit = readVisit(text);
  if (!ended) {
    visit.error = visit.step + " takes longer than " + secondsText(seconds);
  } else if (!visit.done && visit.error.empty()) {
    visit.error = visit.step + ' ' + describeEnd(status);
  }
  return visit;
}

bool isNamed(const std::string& symbol, const std::string& operation) {
  if (operation[0] == '~') return symbol.find("::~") != std::string::npos;
  return symbol.find("::" + operation + '(') != std::string::npos;
}

// The name of the operation if it is among the names of a function, otherwise the first name.
std::string bestName(const std::vector<std::string>& names, const std::string& operation) {
  if (names.empty()) return "";
  const auto named = std::find_if(names.begin(), names.end(),
                                  [&](const std::string& name) { return isNamed(name, operation); });
  return named == names.end() ? names.front() : *named;
}

// Stripped code has a place instead of a name, a C function a name without a class.
bool isMemberFunction(const std::string& symbol) {
  return symbol.find("::") != std::string::npos;
}

void checkSlot(const Slot& slot, std::vector<Finding>& findings) {
  if (slot.operation.empty()) return;
  const std::string place = "position " + std::to_string(slot.position) + ", " + slot.operation + ", ";
  if (slot.symbol.empty()) {
    findings.push_back({Verdict::kNo, "live", place + "holds no code"});
  } else if (slot.symbol == "__cxa_pure_virtual") {
    findings.push_back({Verdict::kNo, "live", place + "is not implemented"});
  } else if (isMemberFunction(slot.symbol) && !isNamed(slot.symbol, slot.operation)) {
    findings.push_back({Verdict::kWarning, "live", place + "holds " + slot.symbol});
  }
}

}  // namespace

void inspectLive(const std::vector<Dependency>& dependencies, LibraryKind kind, double seconds,
                 Report& report) {
  const std::vector<std::string>& operations = operationsOf(kind);
  const Visit visit = visitLibrary(report.library, dependencies, operations.size(), seconds);
  const size_t findings_before = report.findings.size();
  for (size_t i = 0; i < visit.slots.size(); i++) {
    report.slots.push_back({static_cast<int>(i) + 1, operations[i], bestName(visit.slots[i], operations[i])});
    checkSlot(report.slots.back(), report.findings);
  }
  if (!visit.error.empty()) report.findings.push_back({Verdict::kNo, "live", visit.error});
  if (report.findings.size() == findings_before)
    report.findings.push_back({Verdict::kOk, "live", "every operation is where libcpp2c calls it"});
}

}  // namespace contextctl
