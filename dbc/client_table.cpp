// SPDX-License-Identifier: MIT
#include "dbc/client_table.h"

DBClientTable::~DBClientTable() {
  for (const auto& [name, item] : items) delete item;
}
