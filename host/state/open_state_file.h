// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_STATE_OPEN_STATE_H
#define CPP2C_HOST_STATE_OPEN_STATE_H

#include <string>

#include "host/state/database.h"

class ILog;

namespace host {

// Opens the state file of a product, or makes it, and keeps other processes from it until it is closed.
// If other users have access to the file, takes it from them and logs that. Throws util::Error if the file is
// damaged, not of this product, in use, cannot be written or is open to others and not of this user; it is
// then unchanged.
Database openStateFile(const std::string& file, const std::string& product, ILog& log);

}  // namespace host

#endif
