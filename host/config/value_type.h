// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONFIG_VALUE_TYPE_H
#define CPP2C_HOST_CONFIG_VALUE_TYPE_H

#include <string>

namespace host {

// A type of leaves. Each type has exactly one object, so pointers to it can be compared.
struct ValueType {
  const char* name;
  const char* initial;  // the default of a leaf that is declared without one
  bool (*accepts)(const std::string& text);
  bool secret;  // values must not be logged, and are shown only on request
};

// Null if no type has this name.
const ValueType* findValueType(const std::string& name);

// All names, separated by ", ".
std::string valueTypeNames();

// Whether the text is a value of the type. No value may contain a NUL character, which would end it for C.
bool fits(const ValueType& type, const std::string& text);

}  // namespace host

#endif
