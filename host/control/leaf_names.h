// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONTROL_LEAF_NAMES_H
#define CPP2C_HOST_CONTROL_LEAF_NAMES_H

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "host/config/tree.h"

namespace host {

// The names of all leaves that begin with a prefix, in their order. Only a few are in memory at a time. The
// tree may change meanwhile.
class LeafNames {
 public:
  using Name = std::pair<std::string, const Object*>;  // the full name, and the object that has the leaf

  LeafNames(const Tree& tree, std::string prefix) : tree_(tree), prefix_(std::move(prefix)), from_(prefix_) {}

  std::optional<Name> next();

 private:
  void collect();
  void collect(const Object& object);
  bool collect(const Object& object, const std::string& instance);

  const Tree& tree_;
  const std::string prefix_;
  std::string from_;  // the least name that is not collected yet
  std::map<std::string, const Object*> names_;
};

}  // namespace host

#endif
