// SPDX-License-Identifier: MIT
#include "dbc/client_table.h"

#include <vector>

DBClientTable::~DBClientTable() {
  for (const auto& [name, item] : items) delete item;
}

void DBClientTable::lookup(int db, c_visit_callback visit, c_pass_fn3 pass_fn3, c_pass_fn4 pass_fn4,
                           void* arg) const {
  if (visit == nullptr) return;

  std::vector<const DBClientItem*> snapshot;
  snapshot.reserve(items.size());
  for (const auto& [name, item] : items) {
    if (item != nullptr) snapshot.push_back(item);
  }
  for (const DBClientItem* item : snapshot) {
    std::string name = item->name;  // a copy, because `visit` may remove the item
    visit(db, name.data(), item->userdata, pass_fn3, pass_fn4, arg);
  }
}
