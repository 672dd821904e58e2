// SPDX-License-Identifier: MIT
#include "contextctl/leaves/comparison.h"

#include <map>

#include "contextctl/commands/session.h"
#include "contextctl/leaves/leaf_file.h"

namespace contextctl {
namespace {

std::optional<std::string> obstacleTo(const Leaf& wanted, const Leaf* present) {
  if (present == nullptr) return wanted.name + ": unknown name";
  if (present->type != wanted.type)
    return wanted.name + ": of type " + present->type + ", not " + wanted.type;
  if (present->computed) return wanted.name + ": computed, cannot be set";
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
    if (const auto obstacle = obstacleTo(wanted, leaf)) {
      result.obstacles.push_back(*obstacle);
    } else if (leaf->value != wanted.value) {
      result.differences.push_back({leaf->name, leaf->type, leaf->value.value_or(""), *wanted.value});
    }
  }
  return result;
}

Comparison compareWithContext(const Session& session, const std::string& path) {
  const std::vector<Leaf> file =
      readTreeFile(path);  // read first, so that a bad file is the first to be told
  return compare(file, getLeaves(session, "", true));
}

std::optional<std::string> visible(const Session& session, const Difference& difference,
                                   const std::string& value) {
  if (difference.type == "pwd" && !session.reveal()) return std::nullopt;
  return value;
}

}  // namespace contextctl
