// SPDX-License-Identifier: MIT
#ifndef CPP2C_DBC_CLIENT_TABLE_H
#define CPP2C_DBC_CLIENT_TABLE_H

#include <map>
#include <string>

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

  std::map<std::string, DBClientItem*> items;
};

#endif
