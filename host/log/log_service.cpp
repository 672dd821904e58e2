// SPDX-License-Identifier: MIT
#include "host/log/log_service.h"

#include <spdlog/logger.h>
#include <spdlog/sinks/stdout_sinks.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "host/include/cpp2c_host.h"
#include "host/log/log_file.h"
#include "include_c"
#include "util/error.h"
#include "util/text.h"

namespace host {
namespace {

constexpr LogLevel kLevels[] = {
    {"critical", C_LOG_CRITICAL}, {"error", C_LOG_ERROR}, {"warning", C_LOG_WARNING},
    {"notice", C_LOG_NOTICE},     {"info", C_LOG_INFO},   {"debug", C_LOG_DEBUG},
};

constexpr Clock::Duration kFirstInterval = std::chrono::seconds(1);
constexpr Clock::Duration kLongestInterval = std::chrono::hours(1);
constexpr std::size_t kRemembered = 32;  // messages

LogService::Line lineOf(int level, const std::string& module, const char* text) {
  return {nearestLogLevel(level).name, util::oneLine(module), util::oneLine(text)};
}

bool operator==(const LogService::Line& a, const LogService::Line& b) {
  return a.level == b.level && a.module == b.module && a.text == b.text;
}

spdlog::sink_ptr sinkOf(const std::shared_ptr<LogFile>& file) {
  if (file == nullptr) return std::make_shared<spdlog::sinks::stderr_sink_st>();
  return file;
}

}  // namespace

const LogLevel* findLogLevel(const std::string& name) {
  const auto* level =
      std::find_if(std::begin(kLevels), std::end(kLevels), [&](const LogLevel& l) { return name == l.name; });
  return level != std::end(kLevels) ? level : nullptr;
}

const LogLevel& nearestLogLevel(int number) {
  const LogLevel* nearest = std::begin(kLevels);
  for (const LogLevel& level : kLevels) {
    if (level.number <= number) nearest = &level;
  }
  return *nearest;
}

std::string logLevelNames() {
  std::string names;
  for (const LogLevel& level : kLevels) names += (names.empty() ? "" : ", ") + std::string(level.name);
  return names;
}

LogService::LogService(int level, const std::string& file, const Clock& clock)
    : level_(level), clock_(clock), file_(file.empty() ? nullptr : std::make_shared<LogFile>(file)) {
  logger_ = std::make_unique<spdlog::logger>("", sinkOf(file_));
  logger_->set_pattern("%Y-%m-%d %H:%M:%S.%e %v");
  logger_->flush_on(spdlog::level::trace);
}

LogService::~LogService() {
  while (!memory_.empty()) forgetOldest();
}

int LogService::record(std::string module, int level, const char* text) {
  if (text == nullptr) return C_RESULT_PARAM;
  if (isShown(level)) write(lineOf(level, module, text));
  return C_RESULT_OK;
}

int LogService::debugOut(const char* file, int line, const char* text) {
  if (file == nullptr || text == nullptr) return C_RESULT_PARAM;
  if (debug_) write(lineOf(C_LOG_DEBUG, file + (':' + std::to_string(line)), text));
  return C_RESULT_OK;
}

int LogService::Messages::record(std::string module, int level, const char* text) {
  if (text == nullptr) return C_RESULT_PARAM;
  if (log_.isShown(level)) log_.writeMessage(lineOf(level, module, text));
  return C_RESULT_OK;
}

void LogService::reopen() {
  if (file_ == nullptr) return;
  try {
    file_->reopen();
  } catch (const util::Error& error) {
    messages_.record("log", C_LOG_ERROR, error.what());
  }
}

bool LogService::isShown(int level) const {
  return nearestLogLevel(level).number <= level_;
}

// The state is complete before the line is appended: a follower of the log may write a line itself.
void LogService::write(const Line& line, Remembered* message) {
  if (last_line_ != nullptr) writeCount(*last_line_);
  last_line_ = message;
  append(line, clock_.wallTime());
}

void LogService::writeMessage(const Line& line) {
  const auto known = std::find_if(memory_.begin(), memory_.end(),
                                  [&](const Remembered& message) { return message.line == line; });
  if (known != memory_.end()) return countRepetition(*known);
  if (memory_.size() == kRemembered) forgetOldest();
  const Clock::TimePoint now = clock_.now();
  memory_.push_back({line, now + kFirstInterval, kFirstInterval, now});
  write(line, &memory_.back());
}

void LogService::countRepetition(Remembered& message) {
  const Clock::TimePoint now = clock_.now();
  const bool is_new = now - std::exchange(message.seen, now) > kLongestInterval;
  message.count++;
  message.latest = clock_.wallTime();
  if (now < message.due) return;
  message.interval = is_new ? kFirstInterval : std::min(message.interval * 2, kLongestInterval);
  message.due = now + message.interval;
  writeCount(message);
}

void LogService::writeCount(Remembered& message) {
  if (message.count == 0) return;
  Line line = message.line;
  const std::string times = "repeated " + std::to_string(message.count) + " times";
  if (message.count > 1) {
    line.text = last_line_ == &message ? "last message " + times : line.text + " (" + times + ')';
  }
  message.count = 0;
  last_line_ = &message;
  append(line, message.latest);
}

void LogService::forgetOldest() {
  Remembered& oldest = memory_.front();
  writeCount(oldest);
  if (last_line_ == &oldest) last_line_ = nullptr;
  memory_.pop_front();
}

// spdlog has no level "notice". The caller has checked the level, so spdlog receives "info" for each line.
void LogService::append(const Line& line, std::chrono::system_clock::time_point time) {
  logger_->log(time, {}, spdlog::level::info, line.level + (' ' + line.module) + ": " + line.text);
  on_line_(line);
}

}  // namespace host
