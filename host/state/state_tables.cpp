// SPDX-License-Identifier: MIT
#include "host/state/state_tables.h"

#include <utility>

#include "host/config/changes.h"
#include "host/config/tree.h"

namespace host {
namespace {

constexpr int kDeleted = 0;
constexpr int kPresent = 1;

}  // namespace

StateTables::StateTables(Database database)
    : database_(std::move(database)),
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

void StateTables::save(Tree& tree, const Changes& changes, const Names& configured) {
  Transaction transaction(database_);
  write(tree, changes, configured);
  database_.reserveRoom();
  transaction.commit();
}

void StateTables::copy(const StateTables& other) {
  Transaction transaction(database_);
  for (const char* sql : {"DELETE FROM attribute", "DELETE FROM instance", "DELETE FROM value"}) {
    database_.execute(sql);
  }
  Statement attributes(other.database_, "SELECT object, value FROM attribute");
  while (attributes.step()) put_attribute_.run(attributes.text(0), attributes.number(1));
  Statement instances(other.database_, "SELECT name, present FROM instance");
  while (instances.step()) put_instance_.run(instances.text(0), instances.number(1));
  Statement values(other.database_, "SELECT instance, leaf, type, value FROM value");
  while (values.step()) put_value_.run(values.text(0), values.text(1), values.text(2), values.text(3));
  database_.reserveRoom();
  transaction.commit();
}

void StateTables::write(Tree& tree, const Changes& changes, const Names& configured) {
  for (const std::string& object : changes.attributes()) {
    put_attribute_.run(object, tree.named(object)->attribute);
  }
  for (const auto& [instance, was_saved] : changes.instances()) writeInstance(tree, instance, configured);
  for (const auto& [instance, changed] : changes.leaves()) writeValues(tree, instance, changed);
}

void StateTables::writeInstance(Tree& tree, const std::string& instance, const Names& configured) {
  forget_values_.run(instance);
  if (tree.findInstance(instance) != nullptr) {
    put_instance_.run(instance, kPresent);
  } else {
    writeDeleted(instance, configured);
  }
}

void StateTables::writeValues(Tree& tree, const std::string& instance,
                              const Changes::ChangedLeaves& changed) {
  const std::vector<std::string>& values = tree.findInstance(instance)->values;
  for (const Leaf& leaf : tree.ownerOf(instance)->leaves) {
    if (changed[leaf.position]) put_value_.run(instance, leaf.name, leaf.type->name, values[leaf.position]);
  }
}

// The file must remember a deletion only if the configuration file would bring the instance back.
void StateTables::writeDeleted(const std::string& instance, const Names& configured) {
  if (configured.count(instance) != 0) {
    put_instance_.run(instance, kDeleted);
  } else {
    forget_instance_.run(instance);
  }
}

}  // namespace host
