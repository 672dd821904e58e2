// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_INSPECT_DEPENDENCIES_H
#define CPP2C_CONTEXTCTL_INSPECT_DEPENDENCIES_H

#include <string>
#include <vector>

namespace contextctl {

struct Library;
struct SearchPath;

// A library that another one needs.
struct Dependency {
  std::string name;
  std::string needed_by;  // path
  std::string path;       // empty: not found
  std::string problem;    // why a file of that name was skipped; empty: none was
};

// Finds the direct and indirect dependencies of `library`, as the loader does in a process that has loaded
// `ours`. The dependencies of a library precede it.
std::vector<Dependency> findDependencies(const Library& library, const Library& ours,
                                         const SearchPath& search);

}  // namespace contextctl

#endif
