// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_STATE_STATE_FILE_H
#define CPP2C_HOST_STATE_STATE_FILE_H

#include <signal.h>

#include <optional>
#include <set>
#include <string>

#include "host/state/database.h"
#include "util/harmless_signal.h"

class ILog;

namespace host {

class Changes;
class Tree;

// Stores the changes of a tree in a file, which belongs to one product and to one process at a time.
class StateFile {
 public:
  // Creates the file if it does not exist. Throws util::Error if it cannot be used.
  StateFile(const std::string& file, const std::string& product, ILog& log);

  // Applies the saved state to the tree of the configuration. Throws util::Error if the file is damaged.
  void restore(Tree& tree);

  // Writes all changes of that tree in one transaction. On failure, writes none, logs the reason and returns
  // C_RESULT_SYSTEM_CALL.
  int save(Tree& tree, const Changes& changes);

 private:
  std::optional<util::Error> attempt(Tree& tree, const Changes& changes);
  void write(Tree& tree, const Changes& changes);
  void writeInstance(Tree& tree, const std::string& instance);
  void writeDeleted(const std::string& instance);

  const util::HarmlessSignal file_too_large_{SIGXFSZ};  // the write fails instead
  ILog& log_;
  Database database_;
  Statement put_attribute_;
  Statement put_instance_;
  Statement put_value_;
  Statement forget_instance_;
  Statement forget_values_;
  std::set<std::string> configured_;  // the instances of dynamic objects in the configuration file
};

}  // namespace host

#endif
