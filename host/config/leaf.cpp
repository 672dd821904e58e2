// SPDX-License-Identifier: MIT
#include "host/config/leaf.h"

#include <algorithm>
#include <utility>

namespace host {

Leaves::Leaves(std::vector<Leaf> leaves) : in_order_(std::move(leaves)) {
  std::sort(in_order_.begin(), in_order_.end(), [](const Leaf& a, const Leaf& b) { return a.name < b.name; });
  std::size_t position = 0;
  for (Leaf& leaf : in_order_) {
    leaf.position = position++;
    by_name_.emplace(leaf.name, &leaf);
  }
}

const Leaf* Leaves::find(std::string_view name) const {
  const auto leaf = by_name_.find(name);
  return leaf != by_name_.end() ? leaf->second : nullptr;
}

std::vector<Leaf>::const_iterator Leaves::lowerBound(std::string_view name) const {
  return std::lower_bound(in_order_.begin(), in_order_.end(), name,
                          [](const Leaf& leaf, std::string_view wanted) { return leaf.name < wanted; });
}

std::vector<std::string> Leaves::defaultValues() const {
  std::vector<std::string> values;
  values.reserve(in_order_.size());
  for (const Leaf& leaf : in_order_) values.push_back(leaf.default_value);
  return values;
}

}  // namespace host
