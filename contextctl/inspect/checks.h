// SPDX-License-Identifier: MIT
// What can be said of a library without running any of it. Each check adds its findings.
#ifndef CPP2C_CONTEXTCTL_INSPECT_CHECKS_H
#define CPP2C_CONTEXTCTL_INSPECT_CHECKS_H

#include <vector>

#include "contextctl/inspect/report.h"

namespace contextctl {

struct Dependency;
struct Library;

void checkPlatform(const Library& library, const Library& ours, std::vector<Finding>& findings);
void checkEntryPoints(const Library& library, std::vector<Finding>& findings);
void checkStrings(const Library& library, const Library& ours, std::vector<Finding>& findings);
void checkDependencies(const std::vector<Dependency>& dependencies, std::vector<Finding>& findings);
void checkUnloading(const Library& library, std::vector<Finding>& findings);
void checkStack(const Library& library, std::vector<Finding>& findings);

// For another machine's library, when it is not known where that machine's libraries are.
void noteUncheckedDependencies(const Library& library, std::vector<Finding>& findings);

}  // namespace contextctl

#endif
