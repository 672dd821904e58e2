// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_STATE_STATE_FILE_H
#define CPP2C_HOST_STATE_STATE_FILE_H

#include <set>
#include <string>

#include "host/state/database.h"

class Changes;
class ILog;
class Tree;

// What of a tree outlasts the process: a file that belongs to one product, and to one process at a time.
class StateFile {
 public:
  // Makes the file if there is none. Throws StartError if it cannot be used.
  StateFile(const std::string& file, const std::string& product, ILog& log);

  // Lays what is saved over the tree of the configuration. Throws StartError if the file is damaged.
  void layOver(Tree& tree);

  // Writes all changes of that tree, or none of them: C_RESULT_SYSTEM_CALL, and why in the log.
  int save(Tree& tree, const Changes& changes);

 private:
  void write(Tree& tree, const Changes& changes);
  void writeInstance(Tree& tree, const std::string& instance);
  void writeGone(const std::string& instance);

  ILog& log_;
  Database database_;
  Statement put_attribute_;
  Statement put_instance_;
  Statement put_value_;
  Statement forget_instance_;
  Statement forget_values_;
  std::set<std::string> listed_;  // instances of dynamic objects in the configuration
};

#endif
