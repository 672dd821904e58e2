// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONFIG_CHANGES_H
#define CPP2C_HOST_CONFIG_CHANGES_H

#include <map>
#include <set>
#include <string>

namespace host {

// The changes of a tree since the last save. Contains names only; the values are in the tree.
class Changes {
 public:
  void attributeChanged(const std::string& object) { attributes_.insert(object); }
  void leafChanged(const std::string& instance, const std::string& leaf);
  void instanceAdded(const std::string& instance);
  void instanceDeleted(const std::string& instance);

  bool empty() const { return attributes_.empty() && instances_.empty() && leaves_.empty(); }
  void clear() { *this = Changes(); }

  // Full names of objects.
  const std::set<std::string>& attributes() const { return attributes_; }

  // By full name: the instances that were added, deleted, or deleted and added again. The value is true
  // if the instance existed at the last save; then everything saved for it is obsolete.
  const std::map<std::string, bool>& instances() const { return instances_; }

  // By full name of the instance: the changed leaves of instances that were neither added nor deleted.
  const std::map<std::string, std::set<std::string>>& leaves() const { return leaves_; }

 private:
  std::set<std::string> attributes_;
  std::map<std::string, bool> instances_;
  std::map<std::string, std::set<std::string>> leaves_;
};

}  // namespace host

#endif
