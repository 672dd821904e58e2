// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_STATE_OPEN_STATE_H
#define CPP2C_HOST_STATE_OPEN_STATE_H

#include <string>

#include "host/state/database.h"

class ILog;

namespace host {

// Opens or creates a product's state file and locks it until it is closed. If other users have access to the
// file, removes that access and logs it. Throws util::Error, and leaves the file unchanged, if it is damaged,
// in use or read-only, belongs to another product, or is another user's and accessible to others.
Database openStateFile(const std::string& file, const std::string& product, ILog& log);

}  // namespace host

#endif
