// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_STATE_OPEN_STATE_H
#define CPP2C_HOST_STATE_OPEN_STATE_H

#include <string>

#include "host/state/database.h"

namespace host {

// Opens the state file of a product, or makes it, and keeps other processes from it until it is closed.
// Throws util::Error if it is damaged, not of this product, in use or cannot be written; it is then
// unchanged.
Database openStateFile(const std::string& file, const std::string& product);

}  // namespace host

#endif
