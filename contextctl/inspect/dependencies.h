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
  std::string trouble;    // why a file of that name was passed over; may be empty
};

// Finds everything that `library` needs, directly or not, as the loader would in a process that has `ours`
// loaded. What a library needs stands before the library.
std::vector<Dependency> findDependencies(const Library& library, const Library& ours,
                                         const SearchPath& search);

}  // namespace contextctl

#endif
