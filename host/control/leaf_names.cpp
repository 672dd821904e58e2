// SPDX-License-Identifier: MIT
#include "host/control/leaf_names.h"

#include <iterator>

#include "util/text.h"

namespace host {
namespace {

constexpr std::size_t kMostNames = 1000;

}  // namespace

std::optional<LeafNames::Name> LeafNames::next() {
  if (names_.empty()) collect();
  if (names_.empty()) return std::nullopt;
  const auto first = names_.extract(names_.begin());
  return Name(first.key(), first.mapped());
}

// The kMostNames least names of all objects.
void LeafNames::collect() {
  for (const auto& [number, object] : tree_.objects()) {
    if (!object.leaves.empty()) collect(object);
  }
  if (!names_.empty()) from_ = std::prev(names_.end())->first + '\0';
}

// No name of an instance begins with that of another instance of the object, so the leaves have the order of
// their instances.
void LeafNames::collect(const Object& object) {
  auto instance = object.instances.upper_bound(from_);
  if (instance != object.instances.begin()) --instance;
  while (instance != object.instances.end() && collect(object, instance->first)) ++instance;
}

// False: the names that follow in this object are not wanted now.
bool LeafNames::collect(const Object& object, const std::string& instance) {
  const bool is_begun = util::startsWith(from_, instance);
  if (!is_begun && instance < from_) return true;
  auto leaf = is_begun ? object.leaves.lowerBound(from_.substr(instance.size())) : object.leaves.begin();
  for (; leaf != object.leaves.end(); ++leaf) {
    const std::string name = instance + leaf->name;
    if (!util::startsWith(name, prefix_)) return false;
    if (names_.size() == kMostNames && name > std::prev(names_.end())->first) return false;
    names_.emplace(name, &object);
    if (names_.size() > kMostNames) names_.erase(std::prev(names_.end()));
  }
  return true;
}

}  // namespace host
