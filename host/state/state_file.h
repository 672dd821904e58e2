// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_STATE_STATE_FILE_H
#define CPP2C_HOST_STATE_STATE_FILE_H

#include <signal.h>
#include <unistd.h>

#include <memory>
#include <optional>
#include <string>

#include "host/state/state_tables.h"
#include "util/error.h"
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

  // Writes all changes of that tree in one transaction. If the file has been removed or replaced meanwhile,
  // first writes the whole saved state to a new file and logs that. On failure, and always in a forked
  // process, writes none, logs the reason and returns C_RESULT_SYSTEM_CALL.
  int save(Tree& tree, const Changes& changes);

 private:
  std::optional<util::Error> attempt(Tree& tree, const Changes& changes);
  void replaceLostFiles();
  void replaceFile();
  void replaceLog();
  void warn(const std::string& text);

  const util::HarmlessSignal file_too_large_{SIGXFSZ};  // the write fails instead
  ILog& log_;
  const std::string file_;  // absolute
  const std::string product_;
  const pid_t process_ = getpid();  // SQLite must not use one connection in two processes
  std::unique_ptr<StateTables> tables_;
  StateTables::Names configured_;  // the instances of dynamic objects in the configuration file
};

}  // namespace host

#endif
