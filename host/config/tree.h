// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONFIG_TREE_H
#define CPP2C_HOST_CONFIG_TREE_H

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/config/value_type.h"

namespace host {

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

// The objects of the configuration, found by number and by name. It checks no values and tells nobody.
class Tree {
 public:
  // Where a leaf is. Valid until an instance is added or deleted.
  struct Place {
    const std::string& value() const;

    Object* object;
    std::string instance;  // full name
    std::string leaf_name;
    const Leaf* leaf;
    Values* values;  // null: the instance does not exist, but may be added
  };

  // Numbers, names of objects and names of instances must all be different.
  explicit Tree(std::vector<Object> objects);

  Object* find(int number);                                          // null if there is none
  Object* named(const std::string& name);                            // likewise
  std::optional<Place> find(const std::string& fullname);            // of a leaf
  const std::map<int, Object>& objects() const { return objects_; }  // by number
  Object* ownerOf(const std::string& instance);  // the object that has this instance or may; or null

 private:
  std::map<int, Object> objects_;
  std::map<std::string, Object*> by_name_;
};

}  // namespace host

#endif
