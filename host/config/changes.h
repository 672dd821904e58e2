// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONFIG_CHANGES_H
#define CPP2C_HOST_CONFIG_CHANGES_H

#include <map>
#include <set>
#include <string>

namespace host {

// What of a tree has changed since it was last saved. It keeps names only: the values are those of the tree.
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

  // Full names of instances that have come, or gone, or gone and come anew; and for each whether there was
  // one when the tree was last saved. Nothing of that one is left.
  const std::map<std::string, bool>& instances() const { return instances_; }

  // By full name of the instance, for instances that have neither come nor gone.
  const std::map<std::string, std::set<std::string>>& leaves() const { return leaves_; }

 private:
  std::set<std::string> attributes_;
  std::map<std::string, bool> instances_;
  std::map<std::string, std::set<std::string>> leaves_;
};

}  // namespace host

#endif
