// SPDX-License-Identifier: MIT
#ifndef CPP2C_DBC_CLIENT_TABLE_H
#define CPP2C_DBC_CLIENT_TABLE_H

#include <map>
#include <string>

#include "include_c"

// One instance name and the pointer that the client hung on it. The pointer is only kept and handed back.
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

  // The item filed under `name`, or null. An unknown name leaves an empty entry, on purpose: walks skip it, a
  // later add fills it.
  DBClientItem*& slot(const std::string& name) { return items[name]; }

  // Calls `visit`, unless it is null, for each item in ascending order of names. What it visits is settled
  // when the walk starts, so `visit` may add names, and may release the very item that it is given.
  void lookup(int db, c_visit_callback visit, c_pass_fn3 pass_fn3, c_pass_fn4 pass_fn4, void* arg) const;

  std::map<std::string, DBClientItem*> items;
};

#endif
