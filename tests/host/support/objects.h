// SPDX-License-Identifier: MIT
// Objects of a configuration, declared in a test.
#ifndef CPP2C_TESTS_HOST_SUPPORT_OBJECTS_H
#define CPP2C_TESTS_HOST_SUPPORT_OBJECTS_H

#include <string>
#include <utility>
#include <vector>

#include "host/config/tree.h"

namespace host {

// "Leaf0", "Leaf1", ...
inline std::vector<Leaf> numberedLeaves(int count, const char* type, const std::string& default_value) {
  std::vector<Leaf> leaves;
  for (int i = 0; i < count; i++) {
    leaves.push_back({"Leaf" + std::to_string(i), findValueType(type), default_value});
  }
  return leaves;
}

// An object whose instances have the default values.
inline Object objectOf(int number, const std::string& name, std::vector<Leaf> leaves,
                       const std::vector<std::string>& instances) {
  Object object;
  object.number = number;
  object.name = name;
  object.leaves = Leaves(std::move(leaves));
  for (const std::string& instance : instances) {
    object.instances[instance] = {instance, object.leaves.defaultValues()};
  }
  return object;
}

template <typename... Objects>
std::vector<Object> objectsOf(Objects... objects) {
  std::vector<Object> all;
  (all.push_back(std::move(objects)), ...);
  return all;
}

}  // namespace host

#endif
