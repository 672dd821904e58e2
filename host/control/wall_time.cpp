// SPDX-License-Identifier: MIT
#include "host/control/wall_time.h"

#include <cstdio>
#include <ctime>

std::string isoTime(std::chrono::system_clock::time_point time) {
  using std::chrono::milliseconds;
  const auto since = std::chrono::floor<milliseconds>(time.time_since_epoch());
  const auto seconds = std::chrono::floor<std::chrono::seconds>(since);
  const auto ms = static_cast<int>((since - seconds).count());
  const auto calendar = static_cast<std::time_t>(seconds.count());
  std::tm utc{};
  gmtime_r(&calendar, &utc);
  char date[sizeof "2026-01-31T12:00:00" + 16];
  std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", &utc);
  char text[sizeof date + sizeof ".250Z"];
  std::snprintf(text, sizeof text, "%s.%03dZ", date, ms);
  return text;
}
