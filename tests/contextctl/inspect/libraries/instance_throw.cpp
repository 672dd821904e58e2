// SPDX-License-Identifier: MIT
#include <stdexcept>

#include "tests/contextctl/inspect/libraries/entry_points.h"

void* getInstance(void*) {
  throw std::runtime_error("no instance today");
}

void relInstance(void*) {}
