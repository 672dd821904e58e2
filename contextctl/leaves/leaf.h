// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_LEAVES_LEAF_H
#define CPP2C_CONTEXTCTL_LEAVES_LEAF_H

#include <optional>
#include <string>
#include <vector>

#include "contextctl/connection/client.h"
#include "contextctl/connection/message.h"

namespace contextctl {

class Session;

// A leaf of the configuration tree.
struct Leaf {
  std::string name;  // full
  std::string type;
  std::optional<std::string> value;  // none: a password that is not revealed
  bool computed = false;
};

Leaf leafOf(const Record& record);

// Asks for leaves by name or prefix, and for passwords if they are to be shown.
Client::Query leafQuery(const std::string& name, bool reveal);

// The leaves whose full names begin with `prefix`, in the order of their names.
std::vector<Leaf> getLeaves(const Session& session, const std::string& prefix, bool reveal);

// What to show for a value.
std::string shown(const std::optional<std::string>& value);

// As "uint", "uint (computed)".
std::string shownType(const Leaf& leaf);

}  // namespace contextctl

#endif
