// SPDX-License-Identifier: MIT
#include "host/config/tree.h"

#include <utility>

#include "host/config/name.h"

namespace host {

const std::string& Tree::Place::value() const {
  return instance != nullptr ? instance->values[leaf->position] : leaf->default_value;
}

Tree::Tree(std::vector<Object> objects) {
  for (Object& object : objects) {
    Object& kept = objects_.emplace(object.number, std::move(object)).first->second;
    by_name_.emplace(kept.name, &kept);
    for (auto& [name, instance] : kept.instances) keep(kept, instance);
  }
}

Object* Tree::find(int number) {
  const auto object = objects_.find(number);
  return object != objects_.end() ? &object->second : nullptr;
}

Object* Tree::named(std::string_view name) {
  const auto object = by_name_.find(name);
  return object != by_name_.end() ? object->second : nullptr;
}

Object* Tree::ownerOf(std::string_view instance) {
  const auto member = instances_.find(instance);
  return member != instances_.end() ? member->second.object : possibleOwnerOf(instance);
}

// The name of an object cannot be the name of another object's instance.
Object* Tree::possibleOwnerOf(std::string_view instance) {
  if (!isObjectName(instance) || named(instance) != nullptr) return nullptr;
  Object* object = named(parentName(instance));
  return object != nullptr && object->dynamic ? object : nullptr;
}

Instance* Tree::findInstance(std::string_view name) {
  const auto member = instances_.find(name);
  return member != instances_.end() ? member->second.instance : nullptr;
}

std::optional<Tree::Place> Tree::find(std::string_view fullname) {
  const std::string_view name = parentName(fullname);
  const auto existing = instances_.find(name);
  const Member member =
      existing != instances_.end() ? existing->second : Member{possibleOwnerOf(name), nullptr};
  if (member.object == nullptr) return std::nullopt;
  const Leaf* leaf = member.object->leaves.find(fullname.substr(name.size()));
  if (leaf == nullptr) return std::nullopt;
  return Place{member.object, leaf, member.instance, generation_};
}

std::shared_ptr<const InstanceNames> Tree::instanceNames(Object& object) {
  if (object.instance_names == nullptr) {
    InstanceNames names;
    names.reserve(object.instances.size());
    for (const auto& [name, instance] : object.instances) names.push_back(name);
    object.instance_names = std::make_shared<const InstanceNames>(std::move(names));
  }
  return object.instance_names;
}

void Tree::addInstance(Object& object, const std::string& name) {
  Instance added{name, object.leaves.defaultValues()};
  keep(object, object.instances.emplace(name, std::move(added)).first->second);
}

void Tree::deleteInstance(Object& object, const std::string& name) {
  instances_.erase(name);
  object.instances.erase(name);
  object.instance_names.reset();
  generation_++;
}

void Tree::keep(Object& object, Instance& instance) {
  instances_.emplace(instance.name, Member{&object, &instance});
  object.instance_names.reset();
  generation_++;
}

}  // namespace host
