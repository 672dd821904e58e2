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
class Clock;

// Writes records and diagnostics, each as one line: time by the clock, level, module, text.
class LogService final : public ILog {
 public:
  // Shows records up to `level`. Appends to `file`, or writes to standard error if that is empty. Throws
  // StartError if the file cannot be opened.
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

#endif
