// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_INSPECT_LIVE_CHILD_H
#define CPP2C_CONTEXTCTL_INSPECT_LIVE_CHILD_H

#include <cstddef>
#include <string>
#include <vector>

namespace contextctl {

struct Dependency;

// Opens the library in this process, which it may crash or hang, obtains its instance and reports to `pipe`
// in lines of fields, separated by tabs:
//
//   step <what follows>
//   slot <names of the function at the next position, from 1; none: no code>
//   error <why it ends here>
//   done
//
// Then exits.
[[noreturn]] void runLiveChild(int pipe, const std::string& path, const std::vector<Dependency>& dependencies,
                               size_t positions) noexcept;

}  // namespace contextctl

#endif
