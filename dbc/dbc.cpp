// SPDX-License-Identifier: MIT
// The instance-name cache: a map of configuration objects, each with its table of names.
#include <memory>

#include "dbc/client_table.h"
#include "dbc/new_names.h"
#include "include_c"

namespace {

using Root = std::map<int, DBClientTable*>;

// Exists from c_dbc_create() to c_dbc_db_destory(). No other function creates it.
Root* g_root = nullptr;

// Returns the table of `db`, or null. For an unknown number it creates a null entry, like
// DBClientTable::slot(); a null entry has the same effect as no entry.
DBClientTable* tableOf(int db) {
  return g_root != nullptr ? g_root->insert({db, nullptr}).first->second : nullptr;
}

}  // namespace

void* c_dbc_create() {
  if (g_root == nullptr) g_root = new Root;
  return g_root;
}

void c_dbc_add_userdata(int db, const char* name, void* userdata) {
  if (g_root == nullptr) return;

  // If memory runs out, null entries or an empty table remain, which have no effect.
  DBClientTable*& table = g_root->insert({db, nullptr}).first->second;
  if (table == nullptr) table = new DBClientTable;
  DBClientItem*& item = table->slot(name);
  if (item == nullptr) item = new DBClientItem{name, nullptr};
  item->userdata = userdata;
}

void* c_dbc_get_userdata(int db, const char* name) {
  DBClientTable* table = tableOf(db);
  if (table == nullptr) return nullptr;

  const DBClientItem* item = table->slot(name);
  return item != nullptr ? item->userdata : nullptr;
}

void c_dbc_db_release(int db, const char* name) {
  DBClientTable* table = tableOf(db);
  if (table == nullptr) return;

  const auto entry = table->items.try_emplace(name).first;
  const DBClientItem* item = entry->second;
  if (item == nullptr) return;  // the null entry remains, as after DBClientTable::slot()
  table->items.erase(entry);
  delete item;
}

void c_dbc_db_release_all(int db) {
  DBClientTable* table = tableOf(db);
  if (table == nullptr) return;

  g_root->erase(g_root->find(db));
  delete table;
}

void c_dbc_db_destory() {
  if (g_root == nullptr) return;

  for (const auto& [db, table] : *g_root) delete table;
  delete g_root;
  g_root = nullptr;
}

void c_dbc_lookup(int db, c_visit_callback visit, c_pass_fn3 pass_fn3, c_pass_fn4 pass_fn4, void* arg) {
  if (const DBClientTable* table = tableOf(db)) table->lookup(db, visit, pass_fn3, pass_fn4, arg);
}

void NewNames::add(const std::string& name) {
  DBClientTable* table = tableOf(db_);
  const DBClientItem* item = table != nullptr ? table->slot(name) : nullptr;
  std::unique_ptr<DBClientItem> copy(item != nullptr ? new DBClientItem(*item) : nullptr);
  const std::size_t count = before_.items.size();
  DBClientItem*& before = before_.slot(name);
  if (before_.items.size() > count) before = copy.release();
  c_dbc_add_userdata(db_, name.c_str(), nullptr);
}

// Allocates nothing. tableOf() does not, because add() has called it.
NewNames::~NewNames() {
  if (kept_) return;
  for (const auto& [name, before] : before_.items) {
    DBClientTable* table = tableOf(db_);
    if (table == nullptr) return;
    const auto entry = table->items.find(name);
    if (entry == table->items.end() || entry->second == nullptr) continue;
    if (before != nullptr) {
      entry->second->userdata = before->userdata;
    } else {
      delete entry->second;
      table->items.erase(entry);
    }
  }
}
