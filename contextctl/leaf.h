// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_LEAF_H
#define CPP2C_CONTEXTCTL_LEAF_H

#include <optional>
#include <string>
#include <vector>

class Record;
class Session;

// A leaf of the configuration tree.
struct Leaf {
  std::string name;  // full
  std::string type;
  std::optional<std::string> value;  // none: a password that is not revealed
  bool computed = false;
};

Leaf leafOf(const Record& record);

// The leaves whose full names begin with `prefix`, in the order of their names.
std::vector<Leaf> getLeaves(const Session& session, const std::string& prefix, bool reveal);

// What to show for a value.
std::string shown(const std::optional<std::string>& value);

// As "uint", "uint (computed)".
std::string shownType(const Leaf& leaf);

#endif
