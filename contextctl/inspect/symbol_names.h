// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_INSPECT_SYMBOL_NAMES_H
#define CPP2C_CONTEXTCTL_INSPECT_SYMBOL_NAMES_H

#include <cstdint>
#include <map>
#include <set>
#include <string>

namespace contextctl {

class ElfImage;

// The symbols of the functions at each address. There may be several, as compilers merge functions with the
// same code. Hidden functions are included unless the file is stripped.
using FunctionNames = std::map<std::uint64_t, std::set<std::string>>;

// Throws Failure if the file is damaged.
FunctionNames readFunctionNames(const ElfImage& image);

}  // namespace contextctl

#endif
