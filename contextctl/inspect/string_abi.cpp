// SPDX-License-Identifier: MIT
#include "contextctl/inspect/string_abi.h"

#include "contextctl/inspect/library.h"
#include "contextctl/inspect/mangled_name.h"

namespace contextctl {

StringAbi stringAbiOf(const std::vector<DynamicSymbol>& symbols) {
  bool has_new = false, has_old = false;
  for (const DynamicSymbol& symbol : symbols) {
    const MangledName name = scanMangledName(symbol.name);
    has_new = has_new || name.new_string;
    has_old = has_old || name.old_string;
  }
  if (has_new && has_old) return StringAbi::kMixed;
  if (has_new) return StringAbi::kNew;
  return has_old ? StringAbi::kOld : StringAbi::kNone;
}

std::string describe(StringAbi abi) {
  switch (abi) {
    case StringAbi::kNew:
      return "the new std::string";
    case StringAbi::kOld:
      return "the old std::string, from before GCC 5";
    case StringAbi::kMixed:
      return "both the new and the old std::string";
    case StringAbi::kNone:
      break;
  }
  return "no std::string";
}

}  // namespace contextctl
