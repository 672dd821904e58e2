// SPDX-License-Identifier: MIT
// Since GCC 5, libstdc++ has had two layouts of std::string. Strings cross the interfaces of the framework by
// value, so a library with the other layout loads, but corrupts memory.
#ifndef CPP2C_CONTEXTCTL_INSPECT_STRING_ABI_H
#define CPP2C_CONTEXTCTL_INSPECT_STRING_ABI_H

#include <string>
#include <vector>

namespace contextctl {

struct DynamicSymbol;

enum class StringAbi { kNone, kNew, kOld, kMixed };

// The layouts that occur in the names of the symbols.
StringAbi stringAbiOf(const std::vector<DynamicSymbol>& symbols);

// A description as in "the new std::string".
std::string describe(StringAbi abi);

}  // namespace contextctl

#endif
