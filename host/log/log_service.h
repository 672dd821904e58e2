// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_LOG_LOG_SERVICE_H
#define CPP2C_HOST_LOG_LOG_SERVICE_H

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "binding/context.h"

namespace spdlog {
class logger;
}

namespace host {

class Clock;

struct LogLevel {
  const char* name;
  int number;  // a c_log_level: the smaller, the more urgent
};

// Null if there is no level of that name.
const LogLevel* findLogLevel(const std::string& name);

// The least urgent level that is at least as urgent as `number`; the most urgent one for any smaller number.
const LogLevel& nearestLogLevel(int number);

// All names, the most urgent first, separated by ", ".
std::string logLevelNames();

// Writes records and diagnostics, each as one line: time by the clock, level, module, text.
class LogService final : public ILog {
 public:
  // Shows records up to `level`. Appends to `file`, or writes to standard error if that is empty. Throws
  // util::Error if the file cannot be opened.
  LogService(int level, const std::string& file, const Clock& clock);
  ~LogService() override;

  int record(std::string module, int level, const char* text) override;

  // Writes one diagnostic if they are switched on, whatever the level.
  int debugOut(const char* file, int line, const char* text);
  void debugSwitch(bool on) { debug_ = on; }

  // Has each line told that is written.
  struct Line {
    const char* level;
    std::string module;
    std::string text;
  };
  void onLine(std::function<void(const Line&)> tell) { on_line_ = std::move(tell); }

 private:
  void write(const char* level, const std::string& module, const char* text);

  const int level_;
  const Clock& clock_;
  bool debug_ = false;
  std::function<void(const Line&)> on_line_ = [](const Line&) {};
  std::unique_ptr<spdlog::logger> logger_;
};

}  // namespace host

#endif
