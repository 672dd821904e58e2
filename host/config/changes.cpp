// SPDX-License-Identifier: MIT
#include "host/config/changes.h"

namespace host {

void Changes::leafChanged(const std::string& instance, const std::string& leaf) {
  if (instances_.count(instance) == 0) leaves_[instance].insert(leaf);
}

void Changes::instanceAdded(const std::string& instance) {
  instances_.emplace(instance, false);
}

void Changes::instanceDeleted(const std::string& instance) {
  leaves_.erase(instance);
  const auto [change, was_saved] = instances_.emplace(instance, true);
  if (!was_saved && !change->second) instances_.erase(change);  // added and deleted since the last save
}

}  // namespace host
