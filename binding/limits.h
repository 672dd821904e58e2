// SPDX-License-Identifier: MIT
// The lengths and texts by which a context can recognise what the library has truncated or refused.
#ifndef CPP2C_BINDING_LIMITS_H
#define CPP2C_BINDING_LIMITS_H

#include <cstddef>

// Buffer sizes in bytes. Text is truncated to 2 bytes less, see BoundedText.
constexpr std::size_t kDiagnosticBuffer = 1024;
constexpr std::size_t kCommandBuffer = 1024;
constexpr std::size_t kRecordBuffer = 80;

// The file that diagnostics name: fixed, whatever the source file is called and wherever it was built.
constexpr const char* kTraceFile = "cpp2c";

// The diagnostic for a leaf that is read or written under another type than its own.
constexpr const char* kTypeMismatch = "data type error!";

#endif
