// SPDX-License-Identifier: MIT
#ifndef CPP2C_DBC_CLIENT_TABLE_H
#define CPP2C_DBC_CLIENT_TABLE_H

#include <map>
#include <string>

#include "include_c"

// An instance name and the client's pointer, which is stored and never dereferenced.
struct DBClientItem {
  std::string name;
  void* userdata = nullptr;
};

// The instance names of one configuration object. Owns its items.
class DBClientTable {
 public:
  DBClientTable() = default;
  ~DBClientTable();

  DBClientTable(const DBClientTable&) = delete;
  DBClientTable& operator=(const DBClientTable&) = delete;

  // Returns the entry of `name`. For an unknown name it creates a null entry, which lookups skip and a later
  // add fills. This is intended: do not replace it by a search.
  DBClientItem*& slot(const std::string& name) { return items[name]; }

  // Calls `visit`, unless it is null, for each item in ascending order of names. The set of items is fixed
  // before the first call, so `visit` may add names and may remove the item it was called for.
  void lookup(int db, c_visit_callback visit, c_pass_fn3 pass_fn3, c_pass_fn4 pass_fn4, void* arg) const;

  std::map<std::string, DBClientItem*> items;
};

#endif
