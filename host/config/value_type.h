// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONFIG_VALUE_TYPE_H
#define CPP2C_HOST_CONFIG_VALUE_TYPE_H

#include <string>

// One type of leaf. There is one object for each.
struct ValueType {
  const char* name;
  const char* initial;  // the value of a leaf that is declared without one
  bool (*accepts)(const std::string& text);
  bool secret;  // values must not be shown
};

// Null if there is no type of that name.
const ValueType* findValueType(const std::string& name);

// Whether the text is a value of the type. None holds a NUL character, at which it would end for C.
bool fits(const ValueType& type, const std::string& text);

#endif
