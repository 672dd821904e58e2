// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONFIG_TREE_H
#define CPP2C_HOST_CONFIG_TREE_H

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/config/leaf.h"

namespace host {

struct Instance {
  std::string name;                 // full name
  std::vector<std::string> values;  // by the position of the leaf
};

using InstanceNames = std::vector<std::string>;

// One numbered object of the configuration tree. A single instance has the object's own name.
struct Object {
  int number = 0;
  std::string name;
  std::int32_t attribute = 0;
  bool dynamic = false;  // instances are added and deleted at run time
  Leaves leaves;
  std::map<std::string, Instance> instances;            // by full name
  std::shared_ptr<const InstanceNames> instance_names;  // null: not collected yet
};

// The objects of the configuration, by number and by name. The tree does not check
// values and does not notify observers.
class Tree {
 public:
  // The location of a leaf. Its instance is valid until an instance is added or deleted.
  struct Place {
    const std::string& value() const;

    Object* object;
    const Leaf* leaf;
    Instance* instance;  // null: does not exist, but can be added
    std::uint64_t generation;
  };

  // All numbers, names of objects and names of instances must be unique.
  explicit Tree(std::vector<Object> objects);

  Object* find(int number);                                          // null if not found
  Object* named(std::string_view name);                              // null if not found
  std::optional<Place> find(std::string_view fullname);              // of a leaf
  const std::map<int, Object>& objects() const { return objects_; }  // by number

  // Whether no instance was added or deleted since the place was found.
  bool isValid(const Place& place) const { return place.generation == generation_; }

  // The object that has this instance or, if it is dynamic, can have it. Null if there is none.
  Object* ownerOf(std::string_view instance);
  Instance* findInstance(std::string_view name);  // null if not found

  // In their order. Whoever holds the list keeps it as it is now.
  static std::shared_ptr<const InstanceNames> instanceNames(Object& object);

  void addInstance(Object& object, const std::string& name);  // with the default values; must not exist
  void deleteInstance(Object& object, const std::string& name);

 private:
  // An instance, and the object that it belongs to.
  struct Member {
    Object* object;
    Instance* instance;
  };

  void keep(Object& object, Instance& instance);
  Object* possibleOwnerOf(std::string_view instance);

  std::map<int, Object> objects_;
  std::unordered_map<std::string_view, Object*> by_name_;   // the keys are in the objects
  std::unordered_map<std::string_view, Member> instances_;  // the keys are in the instances
  std::uint64_t generation_ = 0;
};

}  // namespace host

#endif
