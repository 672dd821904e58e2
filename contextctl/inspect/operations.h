// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_INSPECT_OPERATIONS_H
#define CPP2C_CONTEXTCTL_INSPECT_OPERATIONS_H

#include <string>
#include <vector>

namespace contextctl {

// What a library is to be.
enum class Kind { kContext, kModule };

// The operations of IContext or IModule, the first one standing at position 1 of the virtual table. A
// destructor begins with "~"; a position that libcpp2c never calls has an empty name.
const std::vector<std::string>& operationsOf(Kind kind);

}  // namespace contextctl

#endif
