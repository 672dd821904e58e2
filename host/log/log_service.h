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
class LogFile;

struct LogLevel {
  const char* name;
  int number;  // a c_log_level; a smaller number is more urgent
};

// Null if no level has this name.
const LogLevel* findLogLevel(const std::string& name);

// The level with the largest number up to `number`; the most urgent level if there is none.
const LogLevel& nearestLogLevel(int number);

// All names, the most urgent level first, separated by ", ".
std::string logLevelNames();

// Writes each log record and each diagnostic as one line: time of the clock, level, module, text.
class LogService final : public ILog {
 public:
  // Writes records up to `level`. Appends to `file`, or writes to standard error if `file` is empty. Throws
  // util::Error if the file cannot be opened.
  LogService(int level, const std::string& file, const Clock& clock);
  ~LogService() override;

  int record(std::string module, int level, const char* text) override;

  // Writes one diagnostic if diagnostics are switched on, whatever the level of the log.
  int debugOut(const char* file, int line, const char* text);
  void debugSwitch(bool on) { debug_ = on; }

  // Opens the file again, for example because it was renamed. If that fails, logs the reason in the old file.
  void reopen();

  // Sets the function to call with each line that is written.
  struct Line {
    const char* level;
    std::string module;
    std::string text;
  };
  void onLine(std::function<void(const Line&)> callback) { on_line_ = std::move(callback); }

 private:
  void write(const char* level, const std::string& module, const char* text);

  const int level_;
  const Clock& clock_;
  bool debug_ = false;
  std::function<void(const Line&)> on_line_ = [](const Line&) {};
  std::shared_ptr<LogFile> file_;  // null: standard error
  std::unique_ptr<spdlog::logger> logger_;
};

}  // namespace host

#endif
