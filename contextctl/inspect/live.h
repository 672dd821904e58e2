// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_INSPECT_LIVE_H
#define CPP2C_CONTEXTCTL_INSPECT_LIVE_H

#include <string>
#include <vector>

#include "contextctl/inspect/operations.h"
#include "contextctl/inspect/report.h"

namespace contextctl {

struct Dependency;

// Opens the library in a separate process, for at most `seconds`, and adds the findings and slots to the
// report.
void inspectLive(const std::vector<Dependency>& dependencies, LibraryKind kind, double seconds,
                 Report& report);

}  // namespace contextctl

#endif
