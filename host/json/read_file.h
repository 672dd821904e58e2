// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_JSON_READ_FILE_H
#define CPP2C_HOST_JSON_READ_FILE_H

#include <string>

// All of a file. Throws StartError if it cannot be read.
std::string readFile(const std::string& name);

#endif
