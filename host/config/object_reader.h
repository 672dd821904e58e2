// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONFIG_OBJECT_READER_H
#define CPP2C_HOST_CONFIG_OBJECT_READER_H

#include <vector>

#include "host/config/tree.h"
#include "host/json/value.h"

namespace host {

// Reads the array "objects" of a configuration file. Throws util::Error for the first mistake.
std::vector<Object> readObjects(const JsonValue& array);

}  // namespace host

#endif
