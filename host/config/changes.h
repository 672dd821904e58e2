// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONFIG_CHANGES_H
#define CPP2C_HOST_CONFIG_CHANGES_H

#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/config/tree.h"

namespace host {

// The changes of a tree since the last save: which, not to what. The values are in the tree.
class Changes {
 public:
  using ChangedLeaves = std::vector<bool>;  // by the position of the leaf

  void attributeChanged(const std::string& object) { attributes_.insert(object); }
  void leafChanged(const Instance& instance, const Leaf& leaf);
  void instanceAdded(const Instance& instance);
  void instanceDeleted(const Instance& instance);  // to be called while it exists

  bool empty() const { return attributes_.empty() && instances_.empty() && leaves_.empty(); }
  void clear() { *this = Changes(); }

  // Full names of objects.
  const std::set<std::string>& attributes() const { return attributes_; }

  // By full name: the instances that were added, deleted, or deleted and added again. The value is true
  // if the instance existed at the last save; then everything saved for it is obsolete.
  const std::map<std::string, bool>& instances() const { return instances_; }

  // The changed leaves of existing instances, in the order of the instances' names.
  std::map<std::string, ChangedLeaves> leaves() const;

 private:
  std::set<std::string> attributes_;
  std::map<std::string, bool> instances_;
  std::unordered_map<const Instance*, ChangedLeaves> leaves_;  // a change of a leaf must cost little
};

}  // namespace host

#endif
