// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONFIG_TREE_H
#define CPP2C_HOST_CONFIG_TREE_H

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/config/object.h"

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

#endif
