// SPDX-License-Identifier: MIT
// How durations are written.
#ifndef CPP2C_CONTEXTCTL_OUTPUT_DURATIONS_H
#define CPP2C_CONTEXTCTL_OUTPUT_DURATIONS_H

#include <string>

namespace contextctl {

// Milliseconds, to the microsecond: as "12.345".
std::string milliseconds(double value);

// Milliseconds, long ones: "3 days 01:02:03", "01:02:03".
std::string uptime(double value);

// As "10 s", "0.5 s".
std::string secondsText(double seconds);

}  // namespace contextctl

#endif
