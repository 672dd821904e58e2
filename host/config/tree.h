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

using Values = std::map<std::string, std::string>;  // by leaf name; a leaf without an entry has its default

// One numbered object of the configuration tree. A single instance has the object's own name.
struct Object {
  int number = 0;
  std::string name;
  std::int32_t attribute = 0;
  bool dynamic = false;  // instances are added and deleted at run time
  std::map<std::string, Leaf> leaves;
  std::map<std::string, Values> instances;  // by full name
};

// The objects of the configuration, by number and by name. The tree does not check
// values and does not notify observers.
class Tree {
 public:
  // The location of a leaf. Valid until an instance is added or deleted.
  struct Place {
    const std::string& value() const;

    Object* object;
    std::string instance;  // full name
    std::string leaf_name;
    const Leaf* leaf;
    Values* values;  // null: the instance does not exist, but can be added
  };

  // All numbers, names of objects and names of instances must be unique.
  explicit Tree(std::vector<Object> objects);

  Object* find(int number);                                          // null if not found
  Object* named(const std::string& name);                            // null if not found
  std::optional<Place> find(const std::string& fullname);            // of a leaf
  const std::map<int, Object>& objects() const { return objects_; }  // by number

  // The object that has this instance or, if it is dynamic, can have it. Null if there is none.
  Object* ownerOf(const std::string& instance);

 private:
  std::map<int, Object> objects_;
  std::map<std::string, Object*> by_name_;
};

}  // namespace host

#endif
