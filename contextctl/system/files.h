// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_SYSTEM_FILES_H
#define CPP2C_CONTEXTCTL_SYSTEM_FILES_H

#include <string>

namespace contextctl {

// Returns the bytes of a regular file. Throws Failure for others: devices and pipes may have no end.
std::string readFile(const std::string& path);

// Throws Failure if standard input cannot be read.
std::string readStandardInput();

// Replaces the contents of the file. A new file is readable by its owner only, as it may contain passwords.
// Throws Failure if it cannot be written.
void writeFile(const std::string& path, const std::string& text);

}  // namespace contextctl

#endif
