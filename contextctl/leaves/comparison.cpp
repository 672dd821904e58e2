// SPDX-License-Identifier: MIT
#include "contextctl/leaves/comparison.h"

#include <map>
#include <optional>

namespace contextctl {
namespace {

std::optional<std::string> findConflict(const Leaf& wanted, const Leaf* present) {
  if (present == nullptr) return wanted.name + ": unknown leaf";
  if (present->type != wanted.type)
    return wanted.name + ": the type is " + present->type + ", not " + wanted.type;
  if (present->computed) return wanted.name + ": a computed leaf cannot be set";
  return std::nullopt;
}

}  // namespace

Comparison compare(const std::vector<Leaf>& file, const std::vector<Leaf>& context) {
  std::map<std::string, const Leaf*> present;
  for (const Leaf& leaf : context) present[leaf.name] = &leaf;

  Comparison result;
  for (const Leaf& wanted : file) {
    const auto found = present.find(wanted.name);
    const Leaf* leaf = found == present.end() ? nullptr : found->second;
    if (const auto conflict = findConflict(wanted, leaf)) {
      result.conflicts.push_back(*conflict);
    } else if (leaf->value != wanted.value) {
      result.differences.push_back({leaf->name, leaf->type, leaf->value.value_or(""), *wanted.value});
    }
  }
  return result;
}

}  // namespace contextctl
