// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_LOG_LOG_SERVICE_H
#define CPP2C_HOST_LOG_LOG_SERVICE_H

#include <chrono>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <utility>

#include "binding/context.h"
#include "host/clock/clock.h"

namespace spdlog {
class logger;
}

namespace host {

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
  LogService(const LogService&) = delete;
  LogService& operator=(const LogService&) = delete;

  // Writes a record of the program.
  int record(std::string module, int level, const char* text) override;

  // The log for the host context's own messages, which must not fill it: a message that repeats one of the
  // latest is counted. The count is written before another line if the message is the last line, and
  // otherwise at growing intervals, when the message is forgotten, and at the end.
  ILog& messages() { return messages_; }

  // Writes one diagnostic if diagnostics are switched on, whatever the level of the log.
  int debugOut(const char* file, int line, const char* text);
  void debugSwitch(bool on) { debug_ = on; }

  // Opens the file again, for example because it was renamed. If that fails, logs the reason in the old file.
  void reopen();

  // Sets the function to call with each line that is written.
  struct Line {
    const char* level;  // the name of a LogLevel
    std::string module;
    std::string text;
  };
  void onLine(std::function<void(const Line&)> callback) { on_line_ = std::move(callback); }

 private:
  class Messages final : public ILog {
   public:
    explicit Messages(LogService& log) : log_(log) {}
    int record(std::string module, int level, const char* text) override;

   private:
    LogService& log_;
  };

  // A message that was written, and what is known of its repetitions since then.
  struct Remembered {
    Line line;
    Clock::TimePoint due;  // when to write the count
    Clock::Duration interval;
    Clock::TimePoint seen;
    std::uint64_t count = 0;
    std::chrono::system_clock::time_point latest = {};
  };

  bool isShown(int level) const;
  void write(const Line& line, Remembered* message = nullptr);
  void writeMessage(const Line& line);
  void countRepetition(Remembered& message);
  void writeCount(Remembered& message);
  void forgetOldest();
  void append(const Line& line, std::chrono::system_clock::time_point time);

  const int level_;
  const Clock& clock_;
  bool debug_ = false;
  Messages messages_{*this};
  std::list<Remembered> memory_;     // in the order in which they were first written
  Remembered* last_line_ = nullptr;  // null: the last line is not a message
  std::function<void(const Line&)> on_line_ = [](const Line&) {};
  std::shared_ptr<LogFile> file_;  // null: standard error
  std::unique_ptr<spdlog::logger> logger_;
};

}  // namespace host

#endif
