// SPDX-License-Identifier: MIT
#include "dbc/client_table.h"

#include <cstddef>
#include <memory>

DBClientTable::~DBClientTable() {
  for (const auto& [name, item] : items) delete item;
}

void DBClientTable::lookup(int db, c_visit_callback visit, c_pass_fn3 pass_fn3, c_pass_fn4 pass_fn4,
                           void* arg) const {
  if (visit == nullptr) return;

  const auto snapshot = std::make_unique<const DBClientItem*[]>(items.size());
  std::size_t count = 0;
  for (const auto& [name, item] : items) {
    if (item != nullptr) snapshot[count++] = item;
  }
  for (std::size_t i = 0; i < count; i++) {
    const DBClientItem* item = snapshot[i];
    std::string name = item->name;  // a copy, because `visit` may remove the item
    // Not data(): a string that shares its text copies it now, and data() must not throw.
    visit(db, &name[0], item->userdata, pass_fn3, pass_fn4, arg);
  }
}
