// SPDX-License-Identifier: MIT
// Lengths and texts by which a context can detect that the library has truncated or rejected something.
#ifndef CPP2C_BINDING_LIMITS_H
#define CPP2C_BINDING_LIMITS_H

#include <cstddef>

// Buffer sizes in bytes. Text is truncated to 2 bytes less, see BoundedText.
constexpr std::size_t kDiagnosticBuffer = 1024;
constexpr std::size_t kCommandBuffer = 1024;
constexpr std::size_t kRecordBuffer = 80;

// The file name in diagnostics. It does not depend on the source file or the build directory.
constexpr const char* kTraceFile = "cpp2c";

// The diagnostic for reading or writing a leaf with the wrong type.
constexpr const char* kTypeMismatch = "data type error!";

#endif
