// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_INSPECT_LIVE_CHILD_H
#define CPP2C_CONTEXTCTL_INSPECT_LIVE_CHILD_H

#include <cstddef>
#include <string>
#include <vector>

namespace contextctl {

struct Dependency;

// Opens the library in this process, which it may crash or hang, asks it for its instance and writes what it
// meets to `pipe`, a line each, its parts parted by tabs:
//
//   stage <what is tried next>
//   slot <each name of the function that stands there; none if there is no code>   from position 1 on
//   trouble <why it ends here>
//   done
//
// Then ends the process.
[[noreturn]] void runLiveChild(int pipe, const std::string& path, const std::vector<Dependency>& dependencies,
                               size_t positions) noexcept;

}  // namespace contextctl

#endif
