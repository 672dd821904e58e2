// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_LOG_LOG_LEVEL_H
#define CPP2C_HOST_LOG_LOG_LEVEL_H

#include <string>

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

#endif
