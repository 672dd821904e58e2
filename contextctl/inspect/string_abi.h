// SPDX-License-Identifier: MIT
// libstdc++ has had two layouts of std::string since GCC 5. Strings cross the framework's interfaces by
// value, so a library with the other layout links, and then corrupts memory.
#ifndef CPP2C_CONTEXTCTL_INSPECT_STRING_ABI_H
#define CPP2C_CONTEXTCTL_INSPECT_STRING_ABI_H

#include <string>
#include <vector>

namespace contextctl {

struct DynamicSymbol;

enum class StringAbi { kNone, kNew, kOld, kMixed };

// Which layouts the names of a library's symbols speak of.
StringAbi stringAbiOf(const std::vector<DynamicSymbol>& symbols);

// As "the new std::string".
std::string describe(StringAbi abi);

}  // namespace contextctl

#endif
