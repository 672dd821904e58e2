// SPDX-License-Identifier: MIT
#include "contextctl/output/durations.h"

#include <cstdio>
#include <sstream>

namespace contextctl {

std::string millisecondsText(double value) {
  char text[400];  // the longest double has 309 digits
  std::snprintf(text, sizeof text, "%.3f", value);
  return text;
}

std::string uptimeText(double value) {
  const auto seconds = static_cast<long long>(value / 1000);
  const long long days = seconds / 86400;
  char clock[32];
  std::snprintf(clock, sizeof clock, "%02lld:%02lld:%02lld", seconds / 3600 % 24, seconds / 60 % 60,
                seconds % 60);
  if (days == 0) return clock;
  return std::to_string(days) + (days == 1 ? " day " : " days ") + clock;
}

std::string secondsText(double value) {
  std::ostringstream text;
  text << value << " s";
  return text.str();
}

}  // namespace contextctl
