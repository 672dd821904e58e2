// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_START_CONFIGURATION_FILE_H
#define CPP2C_HOST_START_CONFIGURATION_FILE_H

#include <chrono>
#include <string>
#include <vector>

#include "host/config/tree.h"

namespace host {

struct Configuration {
  std::chrono::milliseconds heartbeat_limit{1000};
  std::vector<std::string> modules;
  std::vector<Object> objects;
};

// Reads a configuration from its text; `source` names it in messages. Throws util::Error for the first
// mistake.
Configuration parseConfiguration(const std::string& text, const std::string& source);

// Reads a configuration file. Also throws util::Error if the file cannot be read.
Configuration readConfiguration(const std::string& file);

}  // namespace host

#endif
