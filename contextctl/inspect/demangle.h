// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_INSPECT_DEMANGLE_H
#define CPP2C_CONTEXTCTL_INSPECT_DEMANGLE_H

#include <string>

namespace contextctl {

// The C++ name behind a symbol; the symbol itself if it is none.
std::string demangle(const std::string& symbol);

}  // namespace contextctl

#endif
