// SPDX-License-Identifier: MIT
#include "host/state/state_file.h"

#include "binding/context.h"
#include "host/config/changes.h"
#include "host/config/tree.h"
#include "host/include/cpp2c_host.h"
#include "host/state/open_state_file.h"
#include "host/state/restore.h"
#include "include_c"

namespace host {
namespace {

constexpr int kDeleted = 0;
constexpr int kPresent = 1;

}  // namespace

StateFile::StateFile(const std::string& file, const std::string& product, ILog& log)
    : log_(log),
      database_(openStateFile(file, product, log)),
      put_attribute_(database_,
                     "INSERT INTO attribute VALUES (?, ?) "
                     "ON CONFLICT DO UPDATE SET value = excluded.value"),
      put_instance_(database_,
                    "INSERT INTO instance VALUES (?, ?) "
                    "ON CONFLICT DO UPDATE SET present = excluded.present"),
      put_value_(database_,
                 "INSERT INTO value VALUES (?, ?, ?, ?) "
                 "ON CONFLICT DO UPDATE SET type = excluded.type, value = excluded.value"),
      forget_instance_(database_, "DELETE FROM instance WHERE name = ?"),
      forget_values_(database_, "DELETE FROM value WHERE instance = ?") {}

void StateFile::restore(Tree& tree) {
  for (const auto& [number, object] : tree.objects()) {
    if (!object.dynamic) continue;
    for (const auto& [instance, values] : object.instances) configured_.insert(instance);
  }
  restoreTree(database_, tree, log_);
}

int StateFile::save(Tree& tree, const Changes& changes) {
  std::optional<util::Error> error = attempt(tree, changes);
  if (error) error = attempt(tree, changes);
  if (!error) return C_RESULT_OK;
  log_.record("state", C_LOG_ERROR, error->what());
  return C_RESULT_SYSTEM_CALL;
}

// A failed attempt empties the log. This frees the room that the attempt took, and room for a second one.
std::optional<util::Error> StateFile::attempt(Tree& tree, const Changes& changes) {
  try {
    Transaction transaction(database_);
    write(tree, changes);
    database_.reserveRoom();
    transaction.commit();
    return std::nullopt;
  } catch (const util::Error& error) {
    database_.emptyLog();
    return error;
  }
}

void StateFile::write(Tree& tree, const Changes& changes) {
  for (const std::string& object : changes.attributes()) {
    put_attribute_.run(object, tree.named(object)->attribute);
  }
  for (const auto& [instance, was_saved] : changes.instances()) writeInstance(tree, instance);
  for (const auto& [instance, leaves] : changes.leaves()) {
    for (const std::string& leaf : leaves) {
      const Tree::Place place = tree.find(instance + leaf).value();
      put_value_.run(instance, leaf, place.leaf->type->name, place.value());
    }
  }
}

void StateFile::writeInstance(Tree& tree, const std::string& instance) {
  forget_values_.run(instance);
  const Object& object = *tree.ownerOf(instance);
  const auto present = object.instances.find(instance);
  if (present == object.instances.end()) return writeDeleted(instance);

  put_instance_.run(instance, kPresent);
  for (const auto& [leaf, value] : present->second) {
    put_value_.run(instance, leaf, object.leaves.at(leaf).type->name, value);
  }
}

// The file must remember a deletion only if the configuration file would bring the instance back.
void StateFile::writeDeleted(const std::string& instance) {
  if (configured_.count(instance) != 0) {
    put_instance_.run(instance, kDeleted);
  } else {
    forget_instance_.run(instance);
  }
}

}  // namespace host
