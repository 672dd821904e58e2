// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_SYSTEM_FILES_H
#define CPP2C_CONTEXTCTL_SYSTEM_FILES_H

#include <cstddef>
#include <string>

namespace contextctl {

// Returns the bytes of a regular file. Throws Failure for others, as devices and pipes may have no end, and
// for files of more than `largest` MiB.
std::string readFile(const std::string& path, size_t largest);

// Throws Failure if standard input cannot be read or has more than `largest` MiB.
std::string readStandardInput(size_t largest);

// Replaces the contents of the file, which keeps its mode and, if this process may set it, its owner. A new
// file is readable by its owner only, as it may contain passwords. Throws Failure if it cannot be written;
// the file is then as it was.
void writeFile(const std::string& path, const std::string& text);

}  // namespace contextctl

#endif
