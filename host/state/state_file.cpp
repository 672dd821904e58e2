// SPDX-License-Identifier: MIT
#include "host/state/state_file.h"

#include <unistd.h>

#include <filesystem>

#include "binding/context.h"
#include "host/config/changes.h"
#include "host/config/tree.h"
#include "host/include/cpp2c_host.h"
#include "host/state/open_state_file.h"
#include "host/state/restore.h"
#include "include_c"

namespace host {

// The program may change its working directory later.
StateFile::StateFile(const std::string& file, const std::string& product, ILog& log)
    : log_(log),
      file_(std::filesystem::absolute(file)),
      product_(product),
      tables_(std::make_unique<StateTables>(openStateFile(file_, product_, log_))) {}

void StateFile::restore(Tree& tree) {
  for (const auto& [number, object] : tree.objects()) {
    if (!object.dynamic) continue;
    for (const auto& [name, instance] : object.instances) configured_.insert(name);
  }
  restoreTree(tables_->database(), tree, log_);
}

int StateFile::save(Tree& tree, const Changes& changes) {
  if (getpid() != process_) {
    log_.record("state", C_LOG_ERROR, (file_ + ": cannot be saved by a forked process").c_str());
    return C_RESULT_SYSTEM_CALL;
  }
  std::optional<util::Error> error = attempt(tree, changes);
  if (error) error = attempt(tree, changes);
  if (!error) return C_RESULT_OK;
  log_.record("state", C_LOG_ERROR, error->what());
  return C_RESULT_SYSTEM_CALL;
}

// A failed attempt empties the log. This frees the room that the attempt took, and room for a second one.
std::optional<util::Error> StateFile::attempt(Tree& tree, const Changes& changes) {
  try {
    replaceLostFiles();
    if (!changes.empty()) tables_->save(tree, changes, configured_);
    return std::nullopt;
  } catch (const util::Error& error) {
    tables_->database().emptyLog();
    return error;
  }
}

void StateFile::replaceLostFiles() {
  if (!tables_->database().hasItsName()) {
    replaceFile();
  } else if (!tables_->database().logHasItsName()) {
    replaceLog();
  }
}

// The lost file can still be read, because it is open.
void StateFile::replaceFile() {
  tables_->database().removeLog();
  auto tables = std::make_unique<StateTables>(openStateFile(file_, product_, log_));
  tables->copy(*tables_);
  tables_ = std::move(tables);
  warn(file_ + ": was removed or replaced; the whole saved state was written again");
}

void StateFile::replaceLog() {
  tables_->database().reopenLog();
  warn(tables_->database().logFile() + ": was removed or replaced; the whole saved state is in " + file_);
}

void StateFile::warn(const std::string& text) {
  log_.record("state", C_LOG_WARNING, text.c_str());
}

}  // namespace host
