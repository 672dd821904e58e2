// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONFIG_CONFIGURATION_H
#define CPP2C_HOST_CONFIG_CONFIGURATION_H

#include <chrono>
#include <string>
#include <vector>

#include "host/config/object.h"

// What the configuration file says.
struct Configuration {
  std::chrono::milliseconds heartbeat_limit{1000};
  std::vector<std::string> modules;
  std::vector<Object> objects;
};

// Reads a configuration from its text; `source` names it in messages. Throws StartError for the first
// mistake.
Configuration parseConfiguration(const std::string& text, const std::string& source);

// Reads a configuration file. Throws StartError also if that cannot be read.
Configuration readConfiguration(const std::string& file);

#endif
