// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONFIG_OBJECT_H
#define CPP2C_HOST_CONFIG_OBJECT_H

#include <cstdint>
#include <map>
#include <string>

#include "host/config/value_type.h"

struct Leaf {
  const ValueType* type;
  std::string default_value;
  bool computed = false;  // read from the object's data provider
};

using Values = std::map<std::string, std::string>;  // by leaf; a leaf without one has its default

// One numbered object of the configuration tree. With a single instance, that bears the object's own name.
struct Object {
  int number = 0;
  std::string name;
  std::int32_t attribute = 0;
  bool dynamic = false;  // instances come and go at run time
  std::map<std::string, Leaf> leaves;
  std::map<std::string, Values> instances;  // by full name
};

#endif
