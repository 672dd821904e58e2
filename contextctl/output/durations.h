// SPDX-License-Identifier: MIT
// Durations as text.
#ifndef CPP2C_CONTEXTCTL_OUTPUT_DURATIONS_H
#define CPP2C_CONTEXTCTL_OUTPUT_DURATIONS_H

#include <string>

namespace contextctl {

// A duration in milliseconds, as in "12.345".
std::string millisecondsText(double value);

// A duration given in milliseconds, as in "3 days 01:02:03" or "01:02:03".
std::string uptimeText(double value);

// A duration in seconds, as in "10 s" or "0.5 s".
std::string secondsText(double value);

}  // namespace contextctl

#endif
