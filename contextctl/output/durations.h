// SPDX-License-Identifier: MIT
// Durations as text.
#ifndef CPP2C_CONTEXTCTL_OUTPUT_DURATIONS_H
#define CPP2C_CONTEXTCTL_OUTPUT_DURATIONS_H

#include <string>

namespace contextctl {

// Milliseconds as in "12.345".
std::string millisecondsText(double value);

// Milliseconds as in "3 days 01:02:03" or "01:02:03".
std::string uptimeText(double value);

// Seconds as in "10 s" or "0.5 s".
std::string secondsText(double value);

}  // namespace contextctl

#endif
