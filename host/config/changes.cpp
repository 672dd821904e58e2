// SPDX-License-Identifier: MIT
#include "host/config/changes.h"

namespace host {

void Changes::leafChanged(const Instance& instance, const Leaf& leaf) {
  ChangedLeaves& changed = leaves_[&instance];
  if (changed.empty()) changed.resize(instance.values.size());
  changed[leaf.position] = true;
}

void Changes::instanceAdded(const Instance& instance) {
  instances_.emplace(instance.name, false);
}

void Changes::instanceDeleted(const Instance& instance) {
  leaves_.erase(&instance);
  const auto [change, was_saved] = instances_.emplace(instance.name, true);
  if (!was_saved && !change->second) instances_.erase(change);  // added and deleted since the last save
}

std::map<std::string, Changes::ChangedLeaves> Changes::leaves() const {
  std::map<std::string, ChangedLeaves> leaves;
  for (const auto& [instance, changed] : leaves_) leaves.emplace(instance->name, changed);
  return leaves;
}

}  // namespace host
