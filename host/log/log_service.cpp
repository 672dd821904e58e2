// SPDX-License-Identifier: MIT
#include "host/log/log_service.h"

#include <fcntl.h>
#include <spdlog/logger.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/sinks/stdout_sinks.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>

#include "host/clock/clock.h"
#include "host/include/cpp2c_host.h"
#include "include_c"
#include "util/error.h"
#include "util/text.h"

namespace host {
namespace {

constexpr LogLevel kLevels[] = {
    {"critical", C_LOG_CRITICAL}, {"error", C_LOG_ERROR}, {"warning", C_LOG_WARNING},
    {"notice", C_LOG_NOTICE},     {"info", C_LOG_INFO},   {"debug", C_LOG_DEBUG},
};

// Commands that the service runs must not inherit the file.
void closeOnExec(const std::string& /*name*/, std::FILE* file) {
  fcntl(fileno(file), F_SETFD, FD_CLOEXEC);
}

spdlog::sink_ptr openFile(const std::string& file) {
  spdlog::file_event_handlers handlers;
  handlers.after_open = closeOnExec;
  try {
    return std::make_shared<spdlog::sinks::basic_file_sink_st>(file, false, handlers);
  } catch (const spdlog::spdlog_ex&) {
    throw util::Error(C_RESULT_SYSTEM_CALL, file + ": cannot be written: " + std::strerror(errno));
  }
}

spdlog::sink_ptr openSink(const std::string& file) {
  if (file.empty()) return std::make_shared<spdlog::sinks::stderr_sink_st>();
  return openFile(file);
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
    : level_(level), clock_(clock), logger_(std::make_unique<spdlog::logger>("", openSink(file))) {
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

void LogService::write(const char* level, const std::string& module, const char* text) {
  // spdlog has no level "notice". The caller has checked the level, so spdlog receives "info" for each line.
  const Line line{level, util::oneLine(module), util::oneLine(text)};
  logger_->log(clock_.wallTime(), {}, spdlog::level::info,
               line.level + (' ' + line.module) + ": " + line.text);
  on_line_(line);
}

}  // namespace host
