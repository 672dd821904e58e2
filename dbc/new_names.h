// SPDX-License-Identifier: MIT
#ifndef CPP2C_DBC_NEW_NAMES_H
#define CPP2C_DBC_NEW_NAMES_H

#include <string>

#include "dbc/client_table.h"

// Adds the instance names of one configuration object to the cache, all of them or none: unless keep() is
// called, the destructor restores what the cache had before.
class NewNames {
 public:
  explicit NewNames(int db) : db_(db) {}
  ~NewNames();
  NewNames(const NewNames&) = delete;
  NewNames& operator=(const NewNames&) = delete;

  void add(const std::string& name);  // overwrites the user data of a known name with null
  void keep() { kept_ = true; }

 private:
  const int db_;
  bool kept_ = false;
  DBClientTable before_;  // the names added, each with a copy of its item; null if it had none
};

#endif
