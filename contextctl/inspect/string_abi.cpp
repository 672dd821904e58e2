// SPDX-License-Identifier: MIT
#include "contextctl/inspect/string_abi.h"

#include <cctype>

#include "contextctl/inspect/library.h"
#include "contextctl/inspect/symbol_names.h"

namespace contextctl {
namespace {

bool namesNewString(const std::string& name) {
  return name.find("std::__cxx11::") != std::string::npos || name.find("[abi:cxx11]") != std::string::npos;
}

bool isNamePart(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == ':';
}

// Whether `type` occurs as a whole name: not in "mystd::string", not in "std::string_view".
bool namesType(const std::string& name, const std::string& type) {
  for (size_t at = name.find(type); at != std::string::npos; at = name.find(type, at + 1)) {
    const size_t end = at + type.size();
    const bool begins = at == 0 || !isNamePart(name[at - 1]);
    const bool ends = end == name.size() || name[end] == ':' || !isNamePart(name[end]);
    if (begins && ends) return true;
  }
  return false;
}

bool namesOldString(const std::string& name) {
  return namesType(name, "std::string") || namesType(name, "std::basic_string");
}

}  // namespace

StringAbi stringAbiOf(const std::vector<DynamicSymbol>& symbols) {
  bool has_new = false, has_old = false;
  for (const DynamicSymbol& symbol : symbols) {
    const std::string name = demangle(symbol.name);
    has_new = has_new || namesNewString(name);
    has_old = has_old || namesOldString(name);
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
