// SPDX-License-Identifier: MIT
#include "host/log/log_service.h"

#include <spdlog/logger.h>
#include <spdlog/sinks/stdout_sinks.h>

#include <algorithm>
#include <iterator>

#include "host/clock/clock.h"
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

LogService::~LogService() = default;

int LogService::record(std::string module, int level, const char* text) {
  if (text == nullptr) return C_RESULT_PARAM;
  const LogLevel& nearest = nearestLogLevel(level);
  if (nearest.number <= level_) write(nearest.name, module, text);
  return C_RESULT_OK;
}

int LogService::debugOut(const char* file, int line, const char* text) {
  if (file == nullptr || text == nullptr) return C_RESULT_PARAM;
  if (debug_) write(nearestLogLevel(C_LOG_DEBUG).name, file + (':' + std::to_string(line)), text);
  return C_RESULT_OK;
}

void LogService::reopen() {
  if (file_ == nullptr) return;
  try {
    file_->reopen();
  } catch (const util::Error& error) {
    record("log", C_LOG_ERROR, error.what());
  }
}

void LogService::write(const char* level, const std::string& module, const char* text) {
  // spdlog has no level "notice". The caller has checked the level, so spdlog receives "info" for each line.
  const Line line{level, util::oneLine(module), util::oneLine(text)};
  logger_->log(clock_.wallTime(), {}, spdlog::level::info,
               line.level + (' ' + line.module) + ": " + line.text);
  on_line_(line);
}

}  // namespace host
