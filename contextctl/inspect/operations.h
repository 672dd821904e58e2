// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_INSPECT_OPERATIONS_H
#define CPP2C_CONTEXTCTL_INSPECT_OPERATIONS_H

#include <string>
#include <vector>

namespace contextctl {

enum class LibraryKind { kContext, kModule };

// The operations of IContext or IModule in the order of the virtual table. A destructor begins with "~"; a
// position that libcpp2c never calls has an empty name.
const std::vector<std::string>& operationsOf(LibraryKind kind);

}  // namespace contextctl

#endif
