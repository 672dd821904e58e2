// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_MILLISECONDS_H
#define CPP2C_CONTEXTCTL_MILLISECONDS_H

#include <string>

// To the microsecond, as "12.345".
std::string milliseconds(double value);

// A duration as people say it: "3 days 01:02:03", "01:02:03".
std::string uptime(double value);

#endif
