// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_INSPECT_FUNCTION_NAMES_H
#define CPP2C_CONTEXTCTL_INSPECT_FUNCTION_NAMES_H

#include <cstdint>
#include <map>
#include <set>
#include <string>

namespace contextctl {

class ElfImage;

// The C++ names of the functions that begin at an address. There may be several: compilers let functions of
// the same code share one place. Hidden functions are among them unless the file has been stripped.
using FunctionNames = std::map<std::uint64_t, std::set<std::string>>;

// Throws Failure if the file is damaged.
FunctionNames readFunctionNames(const ElfImage& image);

}  // namespace contextctl

#endif
