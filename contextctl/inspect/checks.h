// SPDX-License-Identifier: MIT
// Checks that do not run any code of the library. Each adds its findings.
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

// For a library of another machine whose root folder is unknown.
void noteUncheckedDependencies(const Library& library, std::vector<Finding>& findings);

}  // namespace contextctl

#endif
