// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_SYSTEM_FILES_H
#define CPP2C_CONTEXTCTL_SYSTEM_FILES_H

#include <string>

namespace contextctl {

// The bytes of a regular file. Throws Failure, also for folders, devices and pipes, which may have no end.
std::string readFile(const std::string& path);

// The bytes of standard input.
std::string readStandardInput();

// Replaces the file's content; a new file is readable by its owner only, since it may hold passwords.
void writeFile(const std::string& path, const std::string& text);

}  // namespace contextctl

#endif
