// SPDX-License-Identifier: MIT
#include "host/config/tree.h"

#include <utility>

#include "host/config/name.h"

namespace host {

const std::string& Tree::Place::value() const {
  if (values == nullptr) return leaf->default_value;
  auto value = values->find(leaf_name);
  return value != values->end() ? value->second : leaf->default_value;
}

Tree::Tree(std::vector<Object> objects) {
  for (Object& object : objects) {
    Object& kept = objects_.emplace(object.number, std::move(object)).first->second;
    by_name_.emplace(kept.name, &kept);
  }
}

Object* Tree::find(int number) {
  auto object = objects_.find(number);
  return object != objects_.end() ? &object->second : nullptr;
}

Object* Tree::named(const std::string& name) {
  auto object = by_name_.find(name);
  return object != by_name_.end() ? object->second : nullptr;
}

Object* Tree::ownerOf(const std::string& instance) {
  // The name of an object cannot be the name of another object's instance.
  Object* object = named(instance);
  if (object != nullptr) return object->instances.count(instance) != 0 ? object : nullptr;

  object = named(parentName(instance));
  if (object == nullptr || object->instances.count(instance) != 0) return object;
  return object->dynamic && isObjectName(instance) ? object : nullptr;
}

std::optional<Tree::Place> Tree::find(const std::string& fullname) {
  std::string instance = parentName(fullname);
  Object* object = ownerOf(instance);
  if (object == nullptr) return std::nullopt;

  std::string leaf_name = fullname.substr(instance.size());
  auto leaf = object->leaves.find(leaf_name);
  if (leaf == object->leaves.end()) return std::nullopt;

  auto values = object->instances.find(instance);
  Values* existing = values != object->instances.end() ? &values->second : nullptr;
  return Place{object, std::move(instance), std::move(leaf_name), &leaf->second, existing};
}

}  // namespace host
