// SPDX-License-Identifier: MIT
#include "host/config/value_type.h"

#include <algorithm>
#include <iterator>

#include "host/config/value_check.h"

namespace {

constexpr ValueType kTypes[] = {
    {"int", "0", isInt, false}, {"uint", "0", isUint, false},       {"bool", "false", isBool, false},
    {"str", "", isText, false}, {"ipaddr", "", isIpAddress, false}, {"macaddr", "", isMacAddress, false},
    {"pwd", "", isText, true},  {"base64", "", isBase64, false},    {"datetime", "", isDateTime, false},
};

}  // namespace

const ValueType* findValueType(const std::string& name) {
  const auto* type =
      std::find_if(std::begin(kTypes), std::end(kTypes), [&](const ValueType& t) { return name == t.name; });
  return type != std::end(kTypes) ? type : nullptr;
}

bool fits(const ValueType& type, const std::string& text) {
  return text.find('\0') == std::string::npos && type.accepts(text);
}
