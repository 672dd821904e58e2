// SPDX-License-Identifier: MIT
// Answers of a context with two registrations.
#ifndef CPP2C_TESTS_CONTEXTCTL_COMMANDS_ANSWERS_H
#define CPP2C_TESTS_CONTEXTCTL_COMMANDS_ANSWERS_H

namespace contextctl {

inline constexpr const char* kStatistics =
    R"({"pid":42,"program":"hello","uptimeMs":93784005.5,"clock":"real","calls":7,"busyMs":1.5,)"
    R"("longestMs":0.30000000000000004,"events":2,"changes":3,"clients":1})";

inline constexpr const char* kRegistrations =
    R"({"registrations":[)"
    R"({"kind":"fd","key":"7","function":"read_line","location":"hello.c:20","since":"S","count":2,)"
    R"("totalMs":0.5,"longestMs":0.4,"lastMs":0.1,"lastResult":0},)"
    R"({"kind":"timer","key":"1","function":"tick","location":"","since":"S","count":10,)"
    R"("totalMs":12.25,"longestMs":3,"lastMs":1,"lastResult":-1023}]})";

}  // namespace contextctl

#endif
