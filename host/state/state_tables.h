// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_STATE_STATE_TABLES_H
#define CPP2C_HOST_STATE_STATE_TABLES_H

#include <set>
#include <string>

#include "host/config/changes.h"
#include "host/state/database.h"

namespace host {

class Tree;

// What is in an open state file. Each function writes all or nothing, and throws util::Error in the latter
// case.
class StateTables {
 public:
  using Names = std::set<std::string>;

  explicit StateTables(Database database);

  Database& database() { return database_; }

  // `configured`: the instances of dynamic objects in the configuration file.
  void save(Tree& tree, const Changes& changes, const Names& configured);
  void copy(const StateTables& other);  // replaces all content

 private:
  void write(Tree& tree, const Changes& changes, const Names& configured);
  void writeInstance(Tree& tree, const std::string& instance, const Names& configured);
  void writeValues(Tree& tree, const std::string& instance, const Changes::ChangedLeaves& changed);
  void writeDeleted(const std::string& instance, const Names& configured);

  Database database_;
  Statement put_attribute_;
  Statement put_instance_;
  Statement put_value_;
  Statement forget_instance_;
  Statement forget_values_;
};

}  // namespace host

#endif
