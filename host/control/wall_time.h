// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONTROL_WALL_TIME_H
#define CPP2C_HOST_CONTROL_WALL_TIME_H

#include <chrono>
#include <string>

// ISO 8601 in UTC with milliseconds: "2026-01-31T12:00:00.250Z".
std::string isoTime(std::chrono::system_clock::time_point time);

#endif
