// SPDX-License-Identifier: MIT
#include "host/log/log_level.h"

#include <algorithm>
#include <iterator>

#include "host/include/cpp2c_host.h"

namespace {

constexpr LogLevel kLevels[] = {
    {"critical", C_LOG_CRITICAL}, {"error", C_LOG_ERROR}, {"warning", C_LOG_WARNING},
    {"notice", C_LOG_NOTICE},     {"info", C_LOG_INFO},   {"debug", C_LOG_DEBUG},
};

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
